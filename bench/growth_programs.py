"""Programs of the workbench's scripts that do n times the same, for `growth`."""
from typing import Callable, NamedTuple


class Kind(NamedTuple):
    name: str
    n: int
    program: Callable[[int], str]


def lines(count, form, first=0):
    """`form` with each number in place of %d and the one before in place of %b, one a line."""
    return "".join(form.replace("%d", str(number)).replace("%b", str(number - 1)) + "\n"
                   for number in range(first, first + count))


def each(form, before="", after=""):
    """A declaration or statement that stands n times in the text."""
    return lambda n: before + lines(n, form) + after


def chain(first, form, last):
    """Declarations each of which names the one before."""
    return lambda n: first + "\n" + lines(n - 1, form, 1) + lines(1, last, n - 1)


def repeated(statement, before):
    """Two hundred times a statement that grows with n."""
    return lambda n: before + (statement(n) + "\n") * 200


def within(head, inner, tail, before):
    """Blocks n deep, two hundred times."""
    return repeated(lambda n: head * n + inner + tail * n, before)


def loop(body, before="", after=""):
    """A body that runs n times, counted by `i` from 1; {n} in what stands before it is n."""
    return lambda n: "%s\nFor i As Integer = 1 To %d\n%s\nNext\n%s\n" % (
        before.replace("{n}", str(n)), n, body, after)


def on_text(piece, rest, before=""):
    """Work on the text `s`, which holds a piece n times; `r` and `c` are there for results."""
    return lambda n: '%s\nDim s As String = Repeat("%s", %d)\nDim r As String\nDim c As Integer\n%s\n' % (
        before, piece, n, rest)


def parameters(n):
    names = ", ".join("p%d As Integer" % number for number in range(n))
    return "Sub Work(%s)\nEnd Sub\n" % names + ("Work(" + ", ".join(["1"] * n) + ")\n") * 10


def interfaces_of_one_class(n):
    return (lines(n, "Interface I%d\nSub M%d()\nEnd Interface") + "Class T Implements " +
            ", ".join("I%d" % at for at in range(n)) + "\n" + lines(n, "Sub M%d()\nEnd Sub") + "End Class\n")


def aggregating_interfaces(n):
    pair = ("Interface I%d Aggregates I%b, J%b\nSub M%d()\nEnd Interface\n"
            "Interface J%d Aggregates I%b, J%b\nEnd Interface")
    return ("Interface I0\nSub M0()\nEnd Interface\nInterface J0\nEnd Interface\n" + lines(n - 1, pair, 1) +
            "Class T Implements I%d\n%sEnd Class\n" % (n - 1, lines(n, "Sub M%d()\nEnd Sub")))


INTEGER = "Dim x As Integer\n"
TEXT = "Dim s As String\n"
OBJECT = "Class T\nV As Integer\nText As String\nEnd Class\n"
LINKED = "Class T\nBefore As T\n%sEnd Class\nDim last As T\n"
LINK = "Dim o As New T\no.Before = last\nlast = o"
TOOL = "Module Tool\nGone As Integer\nText As String\nSub Add(x As String)\nText = Text + x\nEnd Sub\nEnd Module\n"
DESTRUCTOR = "Sub Destructor()\nTool.Gone = Tool.Gone + 1\nEnd Sub\n"
WRITER = ("Class Writer\nText As String\nShared All As String\nSub Add(x As String)\nMe.Text = Me.Text + x\nEnd Sub\n"
          "Shared Sub AddToAll(x As String)\nAll = All + x\nEnd Sub\nEnd Class\nDim w As New Writer\n")
PIECE = "Function Piece(i As Integer) As String\nReturn Str(i Mod 10)\nEnd Function\n"
EVENT = ("Class T\nEvent Found(x As Integer)\nSub Run()\nRaiseEvent Found(1)\nEnd Sub\nEnd Class\n"
         "Class Target\nC As Integer\nSub Answer(sender As T, x As Integer)\nC = C + x\nEnd Sub\nEnd Class\n")
DELEGATE = "Delegate Sub Work(x As Integer)\nSub Idle(x As Integer)\nEnd Sub\nDim w As Work\n"
RECURSION = "Sub Deep(n As Integer)\n%s\nEnd Sub\n"
WALK = "For i As Integer = 1 To Len(s)\n%s\nNext"
SEARCH = 'Dim at As Integer = InStr(s, "%s")\nWhile at > 0\nc = c + 1\nat = InStr(at + 1, s, "%s")\nWend'
FIELDS = 'For i As Integer = 1 To CountFields(s, "%s")\nc = c + Len(NthField(s, "%s", i))\nNext'
NUMBERS = "Dim a(%d) As Integer\nFor i As Integer = 0 To Ubound(a)\na(i) = (i * 7919) Mod 10007\nNext\n"
TEXTS = 'Dim a(%d) As String\nFor i As Integer = 0 To Ubound(a)\na(i) = "%s" + Str((i * 7919) Mod 10007)\nNext\n'


def on_array(fill, rest, before=""):
    """Work on the array `a`, which has n elements."""
    return lambda n: before + fill.replace("%d", str(n)) + rest + "\n"


COMPILING = [
    Kind("constants, each from the one before", 10000, chain("Const c0 = 1", "Const c%d = c%b + 1", "Print Str(c%d)")),
    Kind("constants of a module", 10000, each("Const c%d = %d", "Module M\n", "End Module\n")),
    Kind("members of an enumeration", 10000, each("m%d", "Enum E\n", "End Enum\n")),
    Kind("variables", 3500, each("Dim v%d As Integer = %d\nv%d = v%d + 1")),
    Kind("variables of a method", 5000, each("Dim v%d As Integer = %d\nv%d = v%d + 1", "Sub M()\n", "End Sub\n")),
    Kind("static variables", 1500, each("Static v%d As Integer = %d\nv%d = v%d + 1", "Sub M()\n", "End Sub\n")),
    Kind("statements", 10000, each("x = x + x * 2", INTEGER)),
    Kind("terms of a sum", 50, repeated(lambda n: "x = " + " + ".join(["x"] * n), INTEGER)),
    Kind("terms of a text", 50, repeated(lambda n: "s = " + " + ".join(["s"] * n), "Sub M()\n" + TEXT + "End Sub\n"
                                         "Return\n" + TEXT)),
    Kind("terms of a condition", 50, repeated(lambda n: "x = " + " And ".join(["x"] * n), "Dim x As Boolean\n")),
    Kind("parentheses in each other", 20,
         repeated(lambda n: "x = " + "(x + " * n + "x" + ")" * n, INTEGER)),
    Kind("calls in each other", 20,
         repeated(lambda n: "x = " + "F(" * n + "x" + ")" * n,
                  "Function F(x As Integer) As Integer\nReturn x\nEnd Function\n" + INTEGER)),
    Kind("blocks in each other", 20, within("If x Then\n", "x = False\n", "End If\n", "Dim x As Boolean\n")),
    Kind("loops in each other", 20, within("While x > 1\n", "x = 2\n", "Wend\n", INTEGER)),
    Kind("literals of texts", 10000, each('s = "text %d"', TEXT)),
    Kind("characters of a literal", 2000000, lambda n: 'Dim s As String = "' + "x" * n + '"\n'),
    Kind("characters of a comment", 10000000, lambda n: "// " + "x" * n + "\n"),
    Kind("elements on one line", 10000, lambda n: "Dim a() As Integer = Array(" + ", ".join(["7"] * n) + ")\n"),
    Kind("lines that go on", 10000, lambda n: "Dim a() As Integer = Array(1" + ", _\n1" * n + ")\n"),
    Kind("parameters", 500, parameters),
    Kind("labels and jumps", 10000, each("Goto l%d\nl%d:")),
    Kind("jumps over all", 10000, each("Goto last", "", "last:\n")),
    Kind("cases", 5000, each("Case %d\nx = %d", INTEGER + "Select Case x\n", "End Select\n")),
    Kind("branches", 5000, each("ElseIf x = %d Then\nx = 1", INTEGER + "If x = 1 Then\n", "End If\n")),
    Kind("#If", 5000, each("#If False\nx = %d\n#Else\nx = 2\n#EndIf", INTEGER)),
    Kind("#If in each other", 20, within("#If True\n", "x = 2\n", "#EndIf\n", INTEGER)),
    Kind("branches of an #If", 10000, each("#ElseIf False\nx = 2", INTEGER + "#If False\n", "#EndIf\n")),
    Kind("methods", 4000, each("Sub M%d()\nEnd Sub\nM%d")),
    Kind("methods of a class", 3000, each("Sub M%d()\nEnd Sub", "Class T\n", "End Class\nDim o As New T\n")),
    Kind("methods of a class and of its heir", 2000,
         lambda n: "".join("Class %s\n%sEnd Class\n" % (name, lines(n, "Sub M%d()\nEnd Sub"))
                           for name in ("T", "U Inherits T"))),
    Kind("overloads", 2000, each("Sub M(x As T%d)\nEnd Sub\nClass T%d\nEnd Class", "", "M(New T7)\n")),
    Kind("overloads, each called", 500, each("Sub M(x As T%d)\nEnd Sub\nClass T%d\nEnd Class\nM(New T%d)")),
    Kind("fields of a class", 5000, each("F%d As Integer = %d", "Class T\n", "End Class\nDim o As New T\n")),
    Kind("computed properties", 3000,
         each("Property P%d As Integer\nGet\nReturn 1\nEnd Get\nEnd Property", "Class T\n", "End Class\n")),
    Kind("properties of a module", 3500, each("P%d As Integer = %d", "Module M\n", "End Module\n")),
    Kind("fields of a structure", 5000, each("F%d As Integer", "Structure S\n", "End Structure\nDim v As S\n")),
    Kind("events of a class", 3000, each("Event E%d()", "Class T\n", "End Class\n")),
    Kind("classes", 3000, each("Class T%d\nF As Integer\nSub M(o As T%d)\nF = o.F\nEnd Sub\nEnd Class")),
    Kind("structures, each in the next", 48,
         chain("Structure S0\nF As Integer\nEnd Structure", "Structure S%d\nF As S%b\nG As Integer\nEnd Structure",
               "Dim s As S%d")),
    Kind("heirs, each of the one before", 500,
         chain("Class T0\nSub M()\nEnd Sub\nEnd Class", "Class T%d Inherits T%b\nSub M()\nEnd Sub\nEnd Class",
               "Dim o As New T%d\no.M")),
    Kind("heirs of one class", 1500,
         each("Class U%d Inherits T\nSub M()\nEnd Sub\nEnd Class", "Class T\nSub M()\nEnd Sub\nEnd Class\n")),
    Kind("interfaces of a class", 1000, interfaces_of_one_class),
    Kind("classes of an interface", 1500,
         each("Class T%d Implements I\nSub M()\nEnd Sub\nEnd Class", "Interface I\nSub M()\nEnd Interface\n")),
    Kind("interfaces that aggregate two each", 48, aggregating_interfaces),
    Kind("modules", 3000, each("Module M%d\nX As Integer\nSub Work()\nX = X + 1\nEnd Sub\nEnd Module")),
    Kind("global names of modules", 3000, lambda n: (
        lines(n, "Module M%d\nGlobal X%d As Integer\nEnd Module") + lines(n, "X%d = 1"))),
    Kind("Using of modules", 1500, lambda n: (
        lines(n, "Module M%d\nX%d As Integer\nEnd Module\nUsing M%d") + lines(n, "X%d = 1"))),
    Kind("AddressOf", 3000, lambda n: DELEGATE + "w = AddressOf Idle\n" * n),
    Kind("Try that catches", 3000, lambda n: "Dim a() As Integer\n" + "Try\na(0) = 1\nCatch\nEnd Try\n" * n),
]

TEXT_GROWTH = [
    Kind("text grown: variable", 2000000, loop('s = s + "x"', TEXT)),
    Kind("variable, two terms", 500000, loop('s = s + "x" + Str(i)', TEXT)),
    Kind("variable, by itself in between", 500000, loop('s = s + Left(s, 1) + "x"', TEXT)),
    Kind("variable, a call", 500000, loop("s = s + Piece(i)", PIECE + TEXT)),
    Kind("variable of a method, a call", 500000,
         lambda n: PIECE + "Sub Work()\n" + loop("s = s + Piece(i)", TEXT)(n) + "End Sub\nWork\n"),
    Kind("variable, length asked", 1000000, loop('s = s + "é"\nIf Len(s) < 0 Then Exit', TEXT)),
    Kind("variable, cased, length asked", 100000, loop('s = s + Lowercase("É")\nIf Len(s) < 0 Then Exit', TEXT)),
    Kind("variable, last character asked", 200000, loop('s = s + "é"\nIf Right(s, 1) <> "é" Then Exit', TEXT)),
    Kind("variable, order asked", 200000, loop('s = s + "é"\nIf s < "a" Then Exit', TEXT)),
    Kind("field", 500000, loop('o.Text = o.Text + "x"', OBJECT + "Dim o As New T")),
    Kind("field, two terms", 300000, loop('o.Text = o.Text + Str(i) + ","', OBJECT + "Dim o As New T")),
    Kind("field, a call", 500000, loop("o.Text = o.Text + Piece(i)", PIECE + OBJECT + "Dim o As New T")),
    Kind("field, by a method", 500000, loop('w.Add("x")', WRITER)),
    Kind("shared property", 500000, loop('Writer.AddToAll("x")', WRITER)),
    Kind("property of a module", 500000, loop('Tool.Add("x")', TOOL)),
    Kind("variable of the script, by a method", 500000, loop("Add", TEXT + 'Sub Add()\ns = s + "x"\nEnd Sub')),
    Kind("element", 500000, loop('a(1) = a(1) + "x"', "Dim a(2) As String")),
    Kind("element of two dimensions", 500000, loop('a(1, 1) = a(1, 1) + "x"', "Dim a(2, 2) As String")),
    Kind("element of a field", 500000, loop('o.A(1) = o.A(1) + "x"', "Class T\nA(2) As String\nEnd Class\nDim o As New T")),
    Kind("static variable", 500000, loop("Add", 'Sub Add()\nStatic s As String\ns = s + "x"\nEnd Sub')),
    Kind("ByRef parameter", 1000000, lambda n: (
        "Sub Work(ByRef s As String)\n" + loop('s = s + "x"')(n) + "End Sub\n" + TEXT + "Work(s)\n")),
    Kind("ByRef parameter, a call each time", 500000, loop("Add(s)", TEXT + 'Sub Add(ByRef s As String)\ns = s + "x"\nEnd Sub')),
    Kind("ByRef, variable of a method", 500000, lambda n: (
        'Sub Add(ByRef s As String)\ns = s + "x"\nEnd Sub\nSub Work()\n' + loop("Add(s)", TEXT)(n) + "End Sub\nWork\n")),
]

TEXTS_READ = [
    Kind("walk with Mid", 500000, on_text("a", WALK % "r = Mid(s, i, 1)")),
    Kind("walk with Mid, not ASCII", 100000, on_text("é", WALK % "r = Mid(s, i, 1)")),
    Kind("walk with Left and Right of a piece", 100000,
         on_text("é", WALK % "r = Right(Left(Mid(s, i, 9), 5), 1)")),
    Kind("walk with InStr", 500000, on_text("ab", SEARCH % ("b", "b"))),
    Kind("walk with InStr, not ASCII", 100000, on_text("éb", SEARCH % ("b", "b"))),
    Kind("walk with InStr, term not ASCII", 20000, on_text("aé", SEARCH % ("É", "É"))),
    Kind("walk with InStrB", 500000, on_text("éb", SEARCH.replace("InStr", "InStrB") % ("b", "b"))),
    Kind("InStr, nothing found", 2000000, on_text("é", 'c = InStr(s, "x")')),
    Kind("InStr, all alike", 200000, on_text("a", 'c = InStr(s + s, s + "b")')),
    Kind("InStrB, all alike", 1000000, on_text("a", 'c = InStrB(s + s, s + "b")')),
    Kind("walk with NthField", 200000, on_text("one,", FIELDS % (",", ","))),
    Kind("walk with NthField, not ASCII", 200000, on_text("é—", FIELDS % ("—", "—"))),
    Kind("walk with NthField, two texts", 100000, on_text(
        "one,", 'r = s + "x"\n' + (FIELDS % (",", ",")).replace("\nNext", '\nc = c + Len(NthField(r, ",", i))\nNext'))),
    Kind("CountFields asked each time", 200000, on_text("one,", (
        'Dim i As Integer = 1\nWhile i <= CountFields(s, ",")\nr = NthField(s, ",", i)\ni = i + 1\nWend'))),
    Kind("CountFields", 2000000, on_text("one,", 'c = CountFields(s, ",")')),
    Kind("Split and Join", 200000, on_text("one,", 'r = Join(Split(s, ","), ";")')),
    Kind("ReplaceAll", 200000, on_text("one,", 'r = ReplaceAll(s, "ONE", "two")')),
    Kind("ReplaceAll, term not ASCII", 20000, on_text("one é,", 'r = ReplaceAll(s, "É", "two")')),
    Kind("ReplaceAll, text not ASCII", 100000, on_text("éone,", 'r = ReplaceAll(s, "ONE", "two")')),
    Kind("ReplaceAll, nothing found", 500000, on_text("éone,", 'r = ReplaceAll(s, "É—", "two")')),
    Kind("Replace", 500000, on_text("éone,", 'r = Replace(s + "ü", "Ü", "two")')),
    Kind("ReplaceLineEndings", 1000000, on_text('one" + Chr(13) + "', 'r = ReplaceLineEndings(s, "x")')),
    Kind("Uppercase, Lowercase, Titlecase", 100000, on_text("one é ", "r = Uppercase(s) + Lowercase(s) + Titlecase(s)")),
    Kind("Trim, LTrim, RTrim", 500000, on_text(" ", 's = s + "x" + s\nr = Trim(s) + LTrim(s) + RTrim(s)')),
    Kind("Format, long pattern", 500000, on_text("0", "r = Format(1.5, s)")),
    Kind("Format, long pattern with groups", 300000, on_text("0", 'r = Format(1.5, s + ",")')),
    Kind("Format, long pattern, words", 200000, on_text("word ", "r = Format(1.5, s)")),
    Kind("Format, many patterns", 200000, on_text("0;", "r = Format(1.5, s)")),
    Kind("Format and Str of numbers", 50000, loop('s = Format(i, "#,##0.00") + Str(i) + Str(i / 7)', TEXT)),
    Kind("Val and CInt of digits", 2000000, on_text("1", "c = CInt(s)\nDim d As Double = Val(s)")),
    Kind("Repeat", 10000000, on_text("x", "")),
    Kind("Repeat of nothing", 1 << 40, on_text("", "")),
    Kind("texts compared", 1000000, on_text("é", 'r = Repeat("É", Len(s))\nIf r <> s Or r < s Then Print "different"')),
    Kind("BeginsWith and EndsWith", 200000, on_text("é", WALK % 'If s.BeginsWith("a") Or s.EndsWith("b") Then Exit')),
    Kind("Asc and Chr", 200000, loop("s = Chr(Asc(Chr(i Mod 1000 + 1)))", TEXT)),
    Kind("Print", 200000, loop("Print Str(i)")),
]

ARRAYS = [
    Kind("ReDim by one", 500000, loop("ReDim a(i)", "Dim a() As Integer")),
    Kind("ReDim by one, texts", 200000, loop("ReDim a(i)\na(i) = Str(i)", "Dim a() As String")),
    Kind("ReDim by one, downwards", 500000, on_array(NUMBERS, "For i As Integer = Ubound(a) DownTo 0\nReDim a(i)\nNext")),
    Kind("ReDim by one, two dimensions", 300000, loop("ReDim a(i, 1)", "Dim a(1, 1) As Integer")),
    Kind("Append", 300000, loop("a.Append(i)", "Dim a() As Integer")),
    Kind("Append and Pop", 300000, on_array(NUMBERS, (
        "For i As Integer = 0 To Ubound(a)\na.Append(a.Pop + 1)\nNext\nWhile Ubound(a) >= 0\nCall a.Pop\nWend"))),
    Kind("Insert at the front", 500000, loop("a.Insert(0, i)", "Dim a() As Integer")),
    Kind("Remove at the front", 300000, on_array(NUMBERS, "While Ubound(a) >= 0\na.Remove(0)\nWend")),
    Kind("queue of Append and Remove", 300000, on_array(NUMBERS, (
        "For i As Integer = 0 To Ubound(a)\na.Append(a(0))\na.Remove(0)\nNext"))),
    Kind("IndexOf", 2000000, on_array("Dim a(%d) As Integer\n", "Print Str(a.IndexOf(5))")),
    Kind("IndexOf, texts", 100000, on_array(TEXTS.replace("%s", "é"), 'Print Str(a.IndexOf("x"))')),
    Kind("For Each", 200000, on_array(NUMBERS, "Dim c As Integer\nFor Each x As Integer In a\nc = c + x\nNext")),
    Kind("Sort", 100000, on_array(NUMBERS, "a.Sort")),
    Kind("Sort, in order already", 200000, on_array(NUMBERS.replace("(i * 7919) Mod 10007", "i"), "a.Sort")),
    Kind("Sort, texts", 50000, on_array(TEXTS.replace("%s", "x"), "a.Sort")),
    Kind("Sort, texts not ASCII", 10000, on_array(TEXTS.replace("%s", "é"), "a.Sort")),
    Kind("Sort with a function", 8000, on_array(
        NUMBERS, "a.Sort(AddressOf Order)", "Function Order(x As Integer, y As Integer) As Integer\nReturn x - y\nEnd Function\n")),
    Kind("SortWith, Shuffle", 30000, on_array(NUMBERS, "Dim b() As Integer = a\na.Shuffle\na.SortWith(b)")),
    Kind("ParamArray", 50000, loop("Work(i, i, i)", "Sub Work(ParamArray x As Integer)\nEnd Sub")),
]

OBJECTS = [
    Kind("chain dropped", 100000, loop(LINK, LINKED % "", "last = Nil")),
    Kind("chain dropped, destructors", 50000, loop(LINK, TOOL + LINKED % DESTRUCTOR, "last = Nil")),
    Kind("chain left, a circle", 100000, loop(LINK, LINKED % "", "Dim first As T = last\nWhile Not (first.Before Is Nil)\n"
                                              "first = first.Before\nWend\nfirst.Before = last")),
    Kind("array of objects dropped", 100000, loop("a(i) = New T", OBJECT + "Dim a({n}) As T", "ReDim a(-1)")),
    Kind("destructors", 100000, loop("Dim o As New T", TOOL + "Class T\n" + DESTRUCTOR + "End Class")),
    Kind("Variants", 100000, loop("a(i) = i", "Dim a({n}) As Variant")),
    Kind("handlers, added and removed", 50000, loop(
        "AddHandler o.Found, AddressOf h.Answer\no.Run\nRemoveHandler o.Found, AddressOf h.Answer",
        EVENT + "Dim o As New T\nDim h As New Target")),
    Kind("objects with handlers", 30000, loop(
        "a(i) = New T\nAddHandler a(i).Found, AddressOf h.Answer\na(i).Run",
        EVENT + "Dim a({n}) As T\nDim h As New Target")),
    Kind("weak handlers whose targets go", 20000, loop(
        "a(i) = New T\nDim h As New Target\nAddHandler a(i).Found, WeakAddressOf h.Answer\na(i).Run",
        EVENT + "Dim a({n}) As T")),
    Kind("weak handlers of one target", 30000, loop(
        "a(i) = New T\nAddHandler a(i).Found, WeakAddressOf h.Answer\na(i).Run",
        EVENT + "Dim a({n}) As T\nDim h As New Target", "h = Nil")),
    Kind("delegates, made and called", 300000, loop("w = AddressOf Idle\nw.Invoke(i)", DELEGATE)),
    Kind("exceptions", 20000, loop("Try\na(1) = i\nCatch e As OutOfBoundsException\nEnd Try", "Dim a() As Integer")),
    Kind("exceptions through deep calls", 5000, lambda n: (
        RECURSION % "If n > 0 Then\nDeep(n - 1)\nElse\nRaise New RuntimeException\nEnd If" +
        "For i As Integer = 1 To 20\nTry\nDeep(%d)\nCatch\nEnd Try\nNext\n" % n)),
    Kind("exceptions raised again", 5000, lambda n: (
        RECURSION % "If n = 0 Then Raise New RuntimeException\nTry\nDeep(n - 1)\nCatch e As RuntimeException\nRaise e\n"
        "Finally\nEnd Try" + "Try\nDeep(%d)\nCatch\nEnd Try\n" % n)),
    Kind("calls in each other at run time", 20000, lambda n: (
        RECURSION % "If n > 0 Then Deep(n - 1)" + "For i As Integer = 1 To 20\nDeep(%d)\nNext\n" % n)),
    Kind("methods of a late heir", 100, lambda n: (
        chain("Class T0\nSub M()\nEnd Sub\nEnd Class", "Class T%d Inherits T%b\nEnd Class", "Dim o As T0 = New T%d")(n) +
        "For i As Integer = 1 To 100000\nIf o IsA T1 Then o.M\nNext\n")),
]

KINDS = COMPILING + TEXT_GROWTH + TEXTS_READ + ARRAYS + OBJECTS
