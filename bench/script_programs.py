"""The same small programs for the workbench's scripts and for other script engines."""
from typing import NamedTuple


class Program(NamedTuple):
    name: str
    operations: int
    limit: float    # the goal as a ratio to Lua
    sorbel: str
    lua: str
    python: str
    node: str


TWENTY_LINES = "Function Twice(s As String) As String\nReturn s + s\nEnd Function\nDim a(20) As String\n" + "".join(
    'a(%d) = Twice("x") + Str(%d)\n' % (line, line) for line in range(1, 16)) + "Print a(9)\n"

PROGRAMS = [
    Program("integer loop, a turn", 3 * 10**7, 0.6, """Dim s As Integer
For i As Integer = 1 To 30000000
  s = s + i
Next
Print Str(s)
""", """local s = 0
for i = 1, 30000000 do s = s + i end
print(string.format("%d", s))
""", """def run():
    s = 0
    for i in range(1, 30000001):
        s = s + i
    print(s)
run()
""", """let s = 0
for (let i = 1; i <= 30000000; i++) s = s + i
console.log(s)
"""),
    Program("floating-point loop, a turn", 2 * 10**7, 1, """Dim x As Double
For i As Integer = 1 To 20000000
  x = x + i * 0.5
Next
If x = 100000005000000.0 Then Print "right"
""", """local x = 0.0
for i = 1, 20000000 do x = x + i * 0.5 end
if x == 100000005000000.0 then print("right") end
""", """def run():
    x = 0.0
    for i in range(1, 20000001):
        x = x + i * 0.5
    if x == 100000005000000.0:
        print("right")
run()
""", """let x = 0
for (let i = 1; i <= 20000000; i++) x = x + i * 0.5
if (x === 100000005000000) console.log("right")
"""),
    Program("fib(30), a call", 2692537, 0.6, """Function Fib(n As Integer) As Integer
  If n < 2 Then Return n
  Return Fib(n - 1) + Fib(n - 2)
End Function
Print Str(Fib(30))
""", """local function fib(n)
  if n < 2 then return n end
  return fib(n - 1) + fib(n - 2)
end
print(fib(30))
""", """def fib(n):
    if n < 2:
        return n
    return fib(n - 1) + fib(n - 2)
print(fib(30))
""", """function fib(n) {
  if (n < 2) return n
  return fib(n - 1) + fib(n - 2)
}
console.log(fib(30))
"""),
    Program("method of an object, a call", 5 * 10**6, 1, """Class Counter
  Property Total As Integer
  Sub Add(n As Integer)
    Total = Total + n
  End Sub
End Class
Dim c As New Counter
For i As Integer = 1 To 5000000
  c.Add(i)
Next
Print Str(c.Total)
""", """local Counter = {}
Counter.__index = Counter
function Counter:add(n) self.total = self.total + n end
local c = setmetatable({total = 0}, Counter)
for i = 1, 5000000 do c:add(i) end
print(string.format("%d", c.total))
""", """class Counter:
    def __init__(self):
        self.total = 0

    def add(self, n):
        self.total = self.total + n


def run():
    c = Counter()
    for i in range(1, 5000001):
        c.add(i)
    print(c.total)
run()
""", """class Counter {
  constructor() { this.total = 0 }
  add(n) { this.total = this.total + n }
}
const c = new Counter()
for (let i = 1; i <= 5000000; i++) c.add(i)
console.log(c.total)
"""),
    Program("sieve, an element", 10**6, 0.6, """Dim n As Integer = 1000000
Dim a(1000000) As Boolean
Dim c As Integer
For i As Integer = 2 To n
  a(i) = True
Next
For i As Integer = 2 To n
  If a(i) Then
    c = c + 1
    For j As Integer = i * i To n Step i
      a(j) = False
    Next
  End If
Next
Print Str(c)
""", """local n, a, c = 1000000, {}, 0
for i = 2, n do a[i] = true end
for i = 2, n do
  if a[i] then
    c = c + 1
    for j = i * i, n, i do a[j] = false end
  end
end
print(c)
""", """def run(n):
    a = [True] * (n + 1)
    c = 0
    for i in range(2, n + 1):
        if a[i]:
            c += 1
            for j in range(i * i, n + 1, i):
                a[j] = False
    print(c)
run(1000000)
""", """const n = 1000000, a = new Array(n + 1).fill(true)
let c = 0
for (let i = 2; i <= n; i++) {
  if (a[i]) {
    c = c + 1
    for (let j = i * i; j <= n; j += i) a[j] = false
  }
}
console.log(c)
"""),
    Program("reversal, a character", 4 * 10**5, 1, """Dim s, r As String
For i As Integer = 1 To 2000
  s = s + "abcdefghij"
Next
For k As Integer = 1 To 20
  r = ""
  For i As Integer = Len(s) DownTo 1
    r = r + Mid(s, i, 1)
  Next
Next
Print Str(Len(r))
""", """local s, r = string.rep("abcdefghij", 2000)
for k = 1, 20 do
  r = ""
  for i = #s, 1, -1 do r = r .. string.sub(s, i, i) end
end
print(#r)
""", """def run():
    s = "abcdefghij" * 2000
    for k in range(20):
        r = ""
        for i in range(len(s) - 1, -1, -1):
            r = r + s[i]
    print(len(r))
run()
""", """const s = "abcdefghij".repeat(2000)
let r
for (let k = 1; k <= 20; k++) {
  r = ""
  for (let i = s.length - 1; i >= 0; i--) r = r + s[i]
}
console.log(r.length)
"""),
    Program("short string built and searched", 10**6, 1, """Dim a(1000000) As String
Dim c As Integer
For i As Integer = 1 To 1000000
  a(i) = "item" + Str(i) + "x"
Next
For i As Integer = 1 To 1000000
  If InStr(a(i), "99") > 0 Then c = c + 1
Next
Print Str(c)
""", """local a, c = {}, 0
for i = 1, 1000000 do a[i] = "item" .. i .. "x" end
for i = 1, 1000000 do
  if string.find(a[i], "99", 1, true) then c = c + 1 end
end
print(c)
""", """def run():
    a = ["item" + str(i) + "x" for i in range(1, 1000001)]
    c = 0
    for s in a:
        if "99" in s:
            c += 1
    print(c)
run()
""", """const a = []
let c = 0
for (let i = 1; i <= 1000000; i++) a.push("item" + i + "x")
for (const s of a) if (s.includes("99")) c = c + 1
console.log(c)
"""),
]
