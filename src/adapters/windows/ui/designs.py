#!/usr/bin/env python3
"""Writes the windows that .ui files describe as a table in C++ (Design.h).

    designs.py OUTPUT FILE.ui...

Whatever of a file is not understood is an error, so that nothing of a window is silently left out.
"""
import re
import sys
import xml.etree.ElementTree as ET

KINDS = {
    "QVBoxLayout": "column", "QHBoxLayout": "row", "QGridLayout": "grid", "QLabel": "label", "QLineEdit": "line",
    "QPlainTextEdit": "lines", "QRadioButton": "option", "QPushButton": "button", "QComboBox": "combo",
    "QTreeWidget": "list", "QProgressBar": "progress", "QStatusBar": "status", "QGroupBox": "group",
    "QScrollArea": "scroll", "QWidget": "panel", "kartix::adapters::qt::CardFace": "card", "QFrame": "rule",
}
# Said by the control itself, by the kind of the widget, or of no meaning here.
IGNORED = {
    "font", "windowTitle", "sizeConstraint", "styleSheet", "rootIsDecorated", "uniformRowHeights",
    "allColumnsShowFocus", "alternatingRowColors", "editTriggers", "itemsExpandable", "default", "echoMode", "value",
    "textVisible", "sizeGripEnabled", "frameShape", "frameShadow", "widgetResizable", "focusPolicy", "checked",
    "textInteractionFlags",
}


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def size(value):
    def side(name):
        length = int(value.findtext("size/" + name))
        return "unlimited" if length >= 16777215 else str(length)
    return "{%s, %s}" % (side("width"), side("height"))


def aligned(flags, start, centre, end):
    for flag, name in ((start, "start"), (centre, "centre"), (end, "end")):
        if "Qt::" + flag in flags:
            return "Align::" + name
    return None


def alignment(text, prefix=""):
    flags = text.split("|")
    if flags == ["Qt::AlignCenter"]:
        flags = ["Qt::AlignHCenter", "Qt::AlignVCenter"]
    names = ("textHorizontal", "textVertical") if prefix else ("horizontal", "vertical")
    found = (aligned(flags, "AlignLeft", "AlignHCenter", "AlignRight"),
             aligned(flags, "AlignTop", "AlignVCenter", "AlignBottom"))
    return {name: value for name, value in zip(names, found) if value}


def colour(text):
    if text.startswith("#"):
        return "0xff" + text[1:]
    red, green, blue, alpha = (int(n) for n in re.fullmatch(r"rgba\((\d+), (\d+), (\d+), (\d+)\)", text).groups())
    return "0x%02x%02x%02x%02x" % (alpha, red, green, blue)


class Styles:
    """What the style sheet of a card says for the widgets on it."""

    def __init__(self, sheet):
        self.rules = [([s.strip() for s in selectors.split(",")], declarations)
                      for selectors, declarations in re.findall(r"([^{}]+)\{([^}]*)\}", sheet)]

    def of(self, cls, name):
        style = {}
        for selectors, declarations in self.rules:
            if cls not in selectors and cls + "#" + name not in selectors:
                continue
            for declaration in filter(str.strip, declarations.split(";")):
                key, value = (part.strip() for part in declaration.split(":", 1))
                if key in ("color", "background"):
                    style["colour" if key == "color" else key] = colour(value)
                elif key == "border":
                    style["border"] = colour(value.split()[-1])
                elif key == "font-size":
                    style["points"] = value.removesuffix("pt")
                elif key == "font-weight":
                    style["bold"] = "true"
                else:
                    raise ValueError("style " + key)
        order = ("colour", "background", "border", "points", "bold")
        return "{" + ", ".join(".%s = %s" % (key, style[key]) for key in order if key in style) + "}"


class Writer:
    def __init__(self):
        self.lines = []
        self.count = 0

    def array(self, kind, values):
        self.count += 1
        self.lines.append("constexpr %s part%d[] = {%s};" % (kind, self.count, ", ".join(values)))
        return "part%d" % self.count

    def element(self, node, styles=None, around=None):
        """The initialiser of a layout, a widget or a space; its children are written before it."""
        fields = {}
        if node.tag == "spacer":
            fields["kind"] = "Kind::space"
            fields["expands"] = "true"
        else:
            fields["kind"] = "Kind::" + KINDS[node.get("class")]
        fields["name"] = quoted(node.get("name"))
        margins = {}
        for prop in node.findall("property"):
            name = prop.get("name")
            if name == "styleSheet" and fields["kind"] == "Kind::card":
                styles = Styles(prop.findtext("string"))
            elif name.endswith("Margin"):
                margins[name.removesuffix("Margin")] = prop.findtext("number")
            else:
                fields.update(self.property(name, prop))
        if margins:
            fields["margins"] = "{%s}" % ", ".join(
                margins.get(side, "0") for side in ("left", "top", "right", "bottom"))
        if styles and node.tag == "widget" and fields["kind"] != "Kind::card":
            fields["style"] = styles.of(node.get("class"), node.get("name"))
        if around is not None:
            fields.update(self.placed(around))
        for attribute, name in (("columnstretch", "columnStretch"), ("rowstretch", "rowStretch")):
            if node.get(attribute):
                fields[name] = self.array("int", node.get(attribute).split(","))
        children = []
        for child in node:
            if child.tag == "item":
                children.append(self.element(child[0], styles, child))
            elif child.tag in ("layout", "widget"):
                children.append(self.element(child, styles))
            elif child.tag not in ("property", "column"):
                raise ValueError(child.tag)
        if children:
            fields["children"] = self.array("Element", children)
        order = ("kind", "name", "text", "partner", "drawing", "tip", "spoken", "least", "most", "expands", "upright",
                 "readOnly", "wraps", "shrinks", "ink", "style", "horizontal", "vertical", "textHorizontal",
                 "textVertical", "cell", "margins", "horizontalSpacing", "verticalSpacing", "columnStretch",
                 "rowStretch", "children")
        return "{" + ", ".join(".%s = %s" % (key, fields[key]) for key in order if key in fields) + "}"

    @staticmethod
    def property(name, prop):
        texts = {"text": "text", "title": "text", "toolTip": "tip", "accessibleName": "spoken", "drawing": "drawing"}
        flags = {"readOnly": "readOnly", "wordWrap": "wraps", "shrinks": "shrinks", "ink": "ink"}
        spacings = {"spacing": ("horizontalSpacing", "verticalSpacing"), "horizontalSpacing": ("horizontalSpacing",),
                    "verticalSpacing": ("verticalSpacing",)}
        if name in texts:
            return {texts[name]: quoted(prop.findtext("string") or "")}
        if name in flags:
            return {flags[name]: prop.findtext("bool")}
        if name in spacings:
            return {spacing: prop.findtext("number") for spacing in spacings[name]}
        if name == "buddy":
            return {"partner": quoted(prop.findtext("cstring"))}
        if name in ("minimumSize", "sizeHint"):
            return {"least": size(prop)}
        if name == "maximumSize":
            return {"most": size(prop)}
        if name == "alignment":
            return alignment(prop.findtext("set"), "text")
        if name == "orientation":
            return {"upright": "true"} if prop.findtext("enum") == "Qt::Vertical" else {}
        if name == "sizeType":
            return {"expands": "false"} if prop.findtext("enum") == "QSizePolicy::Fixed" else {}
        if name in IGNORED:
            return {}
        raise ValueError("property " + name)

    @staticmethod
    def placed(item):
        fields = {}
        if item.get("row"):
            fields["cell"] = "{%s, %s, %s, %s}" % (item.get("row"), item.get("column"), item.get("rowspan", "1"),
                                                   item.get("colspan", "1"))
        if item.get("alignment"):
            fields.update(alignment(item.get("alignment")))
        return fields

    def design(self, root):
        widget = root.find("widget")
        layout = widget.find("layout")
        fixed = layout.findtext("property[@name='sizeConstraint']/enum") == "QLayout::SetFixedSize"
        element = self.array("Element", [self.element(layout)])
        tabs = self.array("std::string_view", [quoted(stop.text) for stop in root.iter("tabstop")])
        return "{%s, %s, %s, %s}" % (quoted(widget.get("name")), element, "true" if fixed else "false", tabs)


def main(output, files):
    writer = Writer()
    designs = [writer.design(ET.parse(file).getroot()) for file in files]
    with open(output, "w", encoding="utf-8") as out:
        out.write('#include "adapters/windows/ui/Design.h"\n\n')
        out.write("namespace kartix::adapters::native {\nnamespace {\n\n")
        out.write("\n".join(writer.lines))
        out.write("\n\nconstexpr Design designs[] = {\n    " + ",\n    ".join(designs) + "};\n\n}  // namespace\n\n")
        out.write("const Design* findDesign(std::string_view form) {\n  for (const Design& design : designs) {\n"
                  "    if (design.form == form) return &design;\n  }\n  return nullptr;\n}\n\n"
                  "}  // namespace kartix::adapters::native\n")


main(sys.argv[1], sys.argv[2:])
