"""What the help consists of: the topics in help/, and what `sysadmin --describe` wrote about the windows they explain."""
import collections
import json
import pathlib
import re

TOPICS = pathlib.Path(__file__).resolve().parents[2] / "help"

# Topics that belong to no window of their own, and the window that shows what they tell about.
ELSEWHERE = {
    "contents": "frmMain.list",
    "main-window": "frmMain.list",
    "keys": "frmMain.list",
    "maintenance": "frmAcquisitions_VendorTypes.edit",
    "50105": "frmAcquisitions_VendorTypes.edit",
    "50107": "frmSystem_Locations.list",
    "50111": "frmMain.list",
    "50205": "frmOPAC_HoldGroup.list",
    "20210": "frmCallSlip_Rules.list",
    "50452": "frmCataloging_MARCFieldOrderingRules.edit",
    "50534": "frmCirculation_MatrixMap.edit",
    "50633": "frmSearch_HeadingFilter.edit",
    "50642": "frmSearch_BibLinking.list",
}

# Their windows show fields of whatever records they are opened for.
OF_ANY_RECORDS = {"50109", "50110"}

FIELDS = {"EditableText", "ComboBox", "SpinBox", "Table", "List", "Tree"}


def plain(caption):
    """A caption without the marks for keys, the colon and line breaks."""
    text = re.sub(r"&(.)", r"\1", caption)
    return re.sub(r"\s+", " ", text).strip().rstrip(":.").strip()


class Described:
    """The folder that --describe wrote: windows, states and captions by help topic."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        navigation = self.folder / "declarations" / "navigation.json"
        if not navigation.exists():
            raise SystemExit(f"{folder} is no folder that 'sysadmin --describe' wrote: there is no declarations/navigation.json.")
        self.navigation = json.loads(navigation.read_text())
        self.windows = {}
        for file in sorted(self.folder.glob("*.*.json")):
            self.windows[file.name[:-5]] = json.loads(file.read_text())

    def of_topic(self, topic):
        """The names of the pictures that show the topic's windows as somebody works with them."""
        states = [name for name, window in self.windows.items() if str(window["helpContext"]) == topic]
        chosen = []
        for screen in dict.fromkeys(self.windows[name]["screen"] for name in states):
            own = [name for name in states if self.windows[name]["screen"] == screen]
            for kind in ("edit", "view", "list"):
                wanted = [name for name in own if name.rpartition(".")[2].startswith(kind)]
                wanted.sort(key=lambda name: (len(name), name))  # "edit" before "edit-2"
                if wanted:
                    chosen += wanted
                    break
        if not chosen and topic in ELSEWHERE:
            chosen = [name for name in self.windows if name == ELSEWHERE[topic]]
        return chosen

    def fields(self, topic):
        """The fields, check boxes and choices of the topic's windows: caption -> (page, what its tool tip says)."""
        found = {}
        for window in self.windows.values():
            if str(window["helpContext"]) != topic:
                continue
            for control in window["controls"]:
                if not control["visible"] or control["name"].startswith("txtFilter"):
                    continue
                boxes = control["role"] in ("CheckBox", "RadioButton")
                caption = plain(control["text" if boxes else "label"])
                if (boxes or control["role"] in FIELDS) and len(caption) > 1 and not caption.isdigit():
                    said = control["toolTip"].strip() if boxes else ""
                    found.setdefault(caption, (plain(control["page"]), said if len(said) > len(caption) else ""))
        return found

    def page_shown(self, name):
        """The caption of the tab that the picture shows, if its window has tabs."""
        for control in self.windows[name]["controls"]:
            if control["class"] == "QTabWidget" and control["visible"] and control["value"]:
                return plain(control["value"])
        return ""


def names():
    """All topics, without their ".md"."""
    return sorted(file.stem for file in TOPICS.glob("*.md"))


def text(topic):
    return (TOPICS / f"{topic}.md").read_text()


def title(topic):
    return text(topic).splitlines()[0].lstrip("# ").strip()


def links(topic):
    return re.findall(r"\]\(([\w-]+)\.md\)", text(topic))


def contents(described):
    """The tree of topics as pairs (caption, topic or None, children): the first steps, then the groups of the
    navigation, each dialog below the first topic that leads to it."""
    placed = {"contents"}
    screens = [item["topic"] for group in described.navigation for item in group["items"]]
    first = links("contents")
    placed.update(screens, first)

    def below(topic):
        children = []
        for other in links(topic):
            if other not in placed:
                placed.add(other)
                children.append(other)
        return [(title(other), other, below(other)) for other in children]

    tree = [("First Steps", None, [(title(topic), topic, below(topic)) for topic in first])]
    for group in described.navigation:
        tree.append((group["caption"], None,
                     [(item["caption"], item["topic"], below(item["topic"])) for item in group["items"]]))
    rest = [topic for topic in names() if topic not in placed]
    if rest:
        placed.update(rest)
        tree.append(("Other Windows", None, [(title(topic), topic, []) for topic in rest]))
    return tree


def words(topic):
    """The topic's text in small letters, without marks."""
    said = re.sub(r"\]\([^)]*\)|[*_`\[]", "", text(topic))
    return re.sub(r"\s+", " ", said).lower()


def unmentioned(described, topic):
    """The captions of fields that explain themselves nowhere: not in the topic's text, nor in that of a topic to which it
    leads, nor by a tool tip."""
    said = " ".join(words(other) for other in {topic, *links(topic)} - {"contents"})
    return [caption for caption, (_, tip) in described.fields(topic).items() if not tip and caption.lower() not in said]


def index(described):
    """Keyword -> topics: titles, and the captions of fields."""
    entries = collections.defaultdict(list)
    for topic in names():
        for keyword in [title(topic), *described.fields(topic)]:
            keyword = keyword.strip('"( ')
            if keyword and topic not in entries[keyword]:
                entries[keyword].append(topic)
    return dict(sorted(entries.items(), key=lambda entry: entry[0].lower()))
