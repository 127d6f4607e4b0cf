"""Shows the values of this library in GDB: vxJson::Value, DDKey, VX128Guid and the records.

    (gdb) print value
    $1 = object of 2 = {["name"] = "r1", ["ports"] = array of 2 = {1, 2.5}}

Null, booleans, numbers and strings look as in JSON; the other kinds say what they are. A record
shows as what it is, also through a reference to its base class, without the fields that are empty.
A pointer shows what it points to by `print *pointer`.

The Debian packages install it where GDB loads it with the library; elsewhere "source" loads it.
Needs debug information (-g, optimised or not) of the program; the elements of containers need that
of libVxUtil too (package libdataengine1-dbgsym). Reads
the memory of the program and calls nothing in it, so it serves core files too. How deep and how far
values are shown is GDB's to say: `set print max-depth`, `set print elements`.
"""

import datetime
import json

import gdb
import gdb.printing

NO_SYMBOLS = "%s (install libdataengine1-dbgsym to see more)"
PREVIEW_BYTES = 16
TEXT_BYTES = 200


def text_of(string):
    """Address and length of a std::string, its first two words. Some compilers don't describe it."""
    word = gdb.lookup_type("char").pointer()
    words = string.address.cast(word.pointer())
    return words[0], int(words[1])


def bytes_of(string, limit):
    address, length = text_of(string)
    size = min(length, limit)
    return bytes(gdb.selected_inferior().read_memory(int(address), size)) if size else b""


def plain_text(string):
    """A std::string that is part of a line."""
    text = bytes_of(string, TEXT_BYTES).decode("utf-8", "backslashreplace")
    return text + ("..." if text_of(string)[1] > TEXT_BYTES else "")


def lazy_text(string):
    """A std::string that GDB itself quotes and cuts off."""
    address, length = text_of(string)
    return address.lazy_string(length=length)


def time_text(milliseconds):
    try:
        epoch = datetime.datetime(1970, 1, 1)
        moment = epoch + datetime.timedelta(milliseconds=milliseconds)
        return "%d (%s UTC)" % (milliseconds, moment.isoformat(" ", "milliseconds"))
    except OverflowError:
        return str(milliseconds)


def guid_text(guid):
    digits = "".join("%02x" % int(guid["bytes_"]["_M_elems"][i]) for i in range(16))
    parts = (digits[:8], digits[8:12], digits[12:16], digits[16:20], digits[20:])
    return "-".join(parts)


def vector_elements(vector):
    element = vector["_M_impl"]["_M_start"]
    end = vector["_M_impl"]["_M_finish"]
    while element != end:
        yield element.dereference()
        element += 1


def members_of(item):
    """The members of a vxJson::detail::Object in order."""
    vector = item["more_"].type.template_argument(0).pointer()
    more = item["more_"].address.cast(vector.pointer()).dereference()  # of a std::unique_ptr
    for chunk in [item["first_"], *(vector_elements(more.dereference()) if more else ())]:
        for index in range(int(chunk["count"])):
            yield chunk["entries"][index]["member"].dereference()


class ValuePrinter:
    """A vxJson::Value."""

    def __init__(self, value):
        self.value = value
        names = {field.enumval: field.name for field in value["tag_"].type.fields()}
        tag = int(value["tag_"])
        self.tag = names.get(tag, "no kind: %d" % tag).rsplit("::", 1)[-1]
        if self.tag in ("array", "object") and not self.has_symbols():
            self.tag = NO_SYMBOLS % self.tag

    @staticmethod
    def has_symbols():
        try:
            return bool(gdb.lookup_type("vxJson::detail::Object").fields())
        except gdb.error:
            return False

    def container(self, kind):
        kind = gdb.lookup_type("vxJson::detail::" + kind)
        return self.value["plain_"]["container"].cast(kind.pointer()).dereference()

    def elements(self):
        """The elements of an array, which follow it, and their number."""
        array = self.container("Array")
        element = gdb.lookup_type("vxJson::Value")
        return (array.address + 1).cast(element.pointer()), int(array["size"])

    def to_string(self):
        plain = self.value["plain_"]
        if self.tag == "boolean":
            return "true" if plain["boolean"] else "false"
        if self.tag == "negative":
            return str(int(plain["signedNumber"]))
        if self.tag == "natural":
            return str(int(plain["unsignedNumber"]))
        if self.tag == "real":
            return repr(float(plain["real"]))
        if self.tag == "time":
            return "time " + time_text(int(plain["signedNumber"]))
        if self.tag == "string":
            return lazy_text(self.value["text_"])
        if self.tag == "binary":
            length = text_of(self.value["text_"])[1]
            preview = bytes_of(self.value["text_"], PREVIEW_BYTES).hex(" ")
            dots = " ..." if length > PREVIEW_BYTES else ""
            return "binary of %d bytes: %s%s" % (length, preview, dots)
        if self.tag == "array":
            return "array of %d" % self.elements()[1]
        if self.tag == "object":
            return "object of %d" % int(self.container("Object")["size"])
        return self.tag

    def children(self):
        if self.tag == "array":
            elements, count = self.elements()
            for index in range(count):
                yield "[%d]" % index, elements[index]
        elif self.tag == "object":
            for index, member in enumerate(members_of(self.container("Object"))):
                yield "key %d" % index, lazy_text(member["key"])
                yield "value %d" % index, member["value"]

    def display_hint(self):
        return {"string": "string", "array": "array", "object": "map"}.get(self.tag)


class GuidPrinter:
    """A VX128Guid; the one of zeros is invalid."""

    def __init__(self, guid):
        self.text = guid_text(guid)

    def to_string(self):
        return self.text + (" (invalid)" if not self.text.strip("0-") else "")


class KeyPrinter:
    """A DDKey."""

    def __init__(self, key):
        self.key = key

    def to_string(self):
        texts = (plain_text(self.key[name]) for name in ("parserPath_", "varFullName_"))
        return "parser %s, variable %s" % tuple(json.dumps(text) for text in texts)


class RecordPrinter:
    """A CDEDataBase, shown as its dynamic type: device and the fields that are set."""

    TYPES = ("none", "config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw")
    OWN_FIELDS = ("dataMD5_", "command_", "location_")
    TEXTS = ("data_", "triggerKey_", "errorLog_", "dataMD5CA_", "gbAlert_")
    VALUES = ("param_", "properties_", "jsonForGBAlert_")

    def __init__(self, record):
        if record.type.code == gdb.TYPE_CODE_REF:
            record = record.referenced_value()
        self.record = record.cast(record.dynamic_type)

        self.has_symbols = True
        try:
            self.record["type_"]
        except gdb.error:
            self.has_symbols = False

    def to_string(self):
        if not self.has_symbols:
            return NO_SYMBOLS % self.record.type.strip_typedefs().unqualified()
        number = int(self.record["type_"])
        name = self.TYPES[number] if 0 <= number < len(self.TYPES) else self.TYPES[0]
        return '%s of type "%s"' % (self.record.type.strip_typedefs().unqualified(), name)

    def children(self):
        if not self.has_symbols:
            return
        identifier = self.record["deviceIdentifier_"]
        yield "device", identifier["deviceId_"]
        yield from self.texts((("hostName", identifier["hostName_"]),
                               ("domain", identifier["domain_"]["domainDBName_"]),
                               ("nodeType", self.record["nodeIdentify_"]["nodeType"]),
                               ("nodeId", self.record["nodeIdentify_"]["nodeId"])))
        own = [field.name for field in self.record.type.fields() if not field.is_base_class]
        yield from self.fields(name for name in self.OWN_FIELDS if name in own)
        yield "time", time_text(int(self.record["time_"]))
        if self.record["realDataTime_"]:
            yield "realDataTime", time_text(int(self.record["realDataTime_"]))
        yield "flag", self.record["flag_"]
        yield "dataSource", int(self.record["dataSource_"])
        for index, task in enumerate(vector_elements(self.record["taskInfo_"])):
            yield "task %d" % index, self.task_text(task)
        yield from self.fields(self.TEXTS)
        for name in self.VALUES:
            if ValuePrinter(self.record[name]).tag != "null":
                yield name.rstrip("_"), self.record[name]
        yield "isUpdateDataStatus", self.record["isUpdateDataStatus_"]

    @staticmethod
    def task_text(task):
        demand = "on demand" if task["isOnDemand"] else "shared"
        name = json.dumps(plain_text(task["taskId"]))
        return "%s #%d, %s" % (name, task["taskIndex"], demand)

    def fields(self, names):
        return self.texts((name.rstrip("_"), self.record[name]) for name in names)

    @staticmethod
    def texts(pairs):
        return ((name, lazy_text(text)) for name, text in pairs if text_of(text)[1] > 0)


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("dataengine")
    printers.add_printer("vxJson::Value", "^vxJson::Value$", ValuePrinter)
    printers.add_printer("VX128Guid", "^VX128Guid$", GuidPrinter)
    printers.add_printer("DDKey", "^DDKey$", KeyPrinter)
    printers.add_printer("records", "^CDEData(Base|ConfigFile|ShowCommand|StructureData)$",
                         RecordPrinter)
    return printers


gdb.printing.register_pretty_printer(None, make_printers(), replace=True)
