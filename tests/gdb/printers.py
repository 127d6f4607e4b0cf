"""Checks, from inside GDB, how it shows the values of Subject.cpp."""

import gdb

ROWS = (
    ("subject.null", "null"),
    ("subject.yes", "true"),
    ("subject.negative", "-5"),
    ("subject.largest", "18446744073709551615"),
    ("subject.real", "2.0"),
    ("subject.text", r'"quoted \"text\"\n"'),
    ("subject.time", "time 1700000000123 (2023-11-14 22:13:20.123 UTC)"),
    ("subject.longAgo", "time -1 (1969-12-31 23:59:59.999 UTC)"),
    ("subject.bytes", "binary of 21 bytes: 01 02 ff 20 6f 66 20 6d 61 6e 79 20 6d 6f 72 65 ..."),
    ("subject.emptyArray", "array of 0"),
    ("subject.emptyObject", "object of 0"),
    ("subject.nested",
     'object of 3 = {["a"] = "text", ["b"] = array of 3 = {1, array of 0, object of 1 = '
     '{["x"] = null}}, ["c"] = object of 1 = {["d"] = false}}'),
    ("subject.manyKeys",
     'object of 10 = {["k1"] = 1, ["k10"] = 10, ["k2"] = 2, ["k3"] = 3, ["k4"] = 4, ["k5"] = 5, '
     '["k6"] = 6, ["k7"] = 7, ["k8"] = 8, ["k9"] = 9}'),
    ("-max-depth 2 -- subject.deep", "array of 1 = {array of 1 = {array of 1 = {...}}}"),
    ("-elements 2 -- subject.manyKeys", 'object of 10 = {["k1"] = 1...}'),
    ("subject.key", r'parser "parsers/interfaces", variable "ifTable.\"speed\""'),
    ("subject.guid", "00112233-4455-6677-8899-aabbccddeeff"),
    ("subject.nobody", "00000000-0000-0000-0000-000000000000 (invalid)"),
    ("subject.config",
     'CDEDataConfigFile of type "config" = {device = 00112233-4455-6677-8899-aabbccddeeff, '
     'hostName = "r1", domain = "site", nodeId = "00112233-4455-6677-8899-aabbccddeeff", '
     'dataMD5 = "0123", time = 1700000000000 (2023-11-14 22:13:20.000 UTC), flag = 0, '
     'dataSource = -1, task 0 = "nightly" #2, shared, data = "interface Gi0/1\\n", '
     'isUpdateDataStatus = true}'),
    ("*command",
     'CDEDataShowCommand of type "cmd" = {device = 00000000-0000-0000-0000-000000000000 (invalid), '
     'command = "show version", time = 0 (1970-01-01 00:00:00.000 UTC), flag = 0, '
     'dataSource = -1, isUpdateDataStatus = true}'),
    ("subject.result",
     'CDEDataStructureData of type "none" = {device = 00000000-0000-0000-0000-000000000000 '
     '(invalid), location = "BGP/Neighbors", time = 0 (1970-01-01 00:00:00.000 UTC), flag = 0, '
     'dataSource = -1, param = object of 1 = {["vrf"] = "blue"}, isUpdateDataStatus = true}'),
    ("node",
     'CDEDataBase of type "raw" = {device = 00000000-0000-0000-0000-000000000000 (invalid), '
     'nodeType = "pod", nodeId = "p-7", time = 0 (1970-01-01 00:00:00.000 UTC), flag = 0, '
     'dataSource = -1, isUpdateDataStatus = true}'),
)


def check(expression, expected):
    """Whether GDB prints what is expected; says so if it doesn't."""
    try:
        printed = gdb.execute("print " + expression, to_string=True).strip()
    except gdb.error as error:
        printed = "$0 = error: %s" % error
    shown = printed.split(" = ", 1)[1]
    if shown.startswith("("):  # the type of a reference
        shown = shown.split(": ", 1)[1]
    if shown == expected:
        return True
    print("print %s\n  expected %s\n  shown    %s" % (expression, expected, shown))
    return False


gdb.execute("set width 0")
gdb.execute("set print elements 200")
gdb.execute("break Stop")
gdb.execute("run")
passed = [check(*row) for row in ROWS]
print("%d of %d shown as expected" % (sum(passed), len(passed)))
gdb.execute("kill")
gdb.execute("quit %d" % (0 if all(passed) else 1))
