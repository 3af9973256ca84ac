"""The structure of XLIFF 1.2 as far as an exported file may use it, from the OASIS standard of 1 February 2008
(its section 2 and appendix A): which element may stand where, how often, and with what attributes."""
import re
import xml.etree.ElementTree as tree

SPACE = "{urn:oasis:names:tc:xliff:document:1.2}"
LANGUAGE = re.compile(r"[A-Za-z]{1,8}(-[A-Za-z0-9]{1,8})*$")
STATES = {"final", "needs-adaptation", "needs-l10n", "needs-review-adaptation", "needs-review-l10n",
          "needs-review-translation", "needs-translation", "new", "signed-off", "translated"}
# Element: (its children in order as a pattern over their names, required attributes, optional ones)
RULES = {
    "xliff": ("(file )+", {"version"}, set()),
    "file": ("(header )?body ", {"original", "source-language", "datatype"}, {"target-language"}),
    "body": "(group |trans-unit |bin-unit )*",
    "trans-unit": ("source (seg-source )?(target )?(note |alt-trans )*", {"id"}, {"resname", "approved", "xml:space"}),
    "source": ("", set(), {"xml:lang"}),
    "target": ("", set(), {"state", "xml:lang"}),
    "note": ("", set(), {"from", "xml:lang"}),
}
XML = "{http://www.w3.org/XML/1998/namespace}"


def check(element, path=""):
    """Raises AssertionError where the rules are broken."""
    name = element.tag.replace(SPACE, "")
    path += "/" + name
    rule = RULES[name]
    children, required, optional = rule if isinstance(rule, tuple) else (rule, set(), set())
    found = {attribute.replace(XML, "xml:") for attribute in element.attrib}
    assert element.tag.startswith(SPACE), path
    assert required <= found <= required | optional, (path, found)
    assert re.fullmatch(children, "".join(child.tag.replace(SPACE, "") + " " for child in element)), path
    assert name in ("source", "target", "note") or not (element.text or "").strip(), path
    assert not (element.tail or "").strip(), path
    for attribute in ("source-language", "target-language"):
        assert LANGUAGE.match(element.get(attribute, "en")), (path, element.get(attribute))
    assert element.get("state", "new") in STATES and element.get(XML + "space", "preserve") == "preserve", path
    for child in element:
        check(child, path)


def check_file(path):
    root = tree.parse(path).getroot()
    check(root)
    assert root.get("version") == "1.2"
    ids = [unit.get("id") for unit in root.iter(SPACE + "trans-unit")]
    assert len(ids) == len(set(ids)), "ids are unique within a file"
    return root
