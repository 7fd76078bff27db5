"""The custom action by which the sample's products resolve the directories in their paths on the workstation.

The installer puts a property into a registry value as it stands, without looking for further names in it. So the
paths are resolved in their properties first, once the directories of the workstation are known.
"""

NAME = "ResolvePaths"
SCRIPT_IN_TARGET = 37  # JScript
SEQUENCE = 1010  # behind CostFinalize
CONDITION = "NOT REMOVE=\"ALL\""
NO_PATH = "[NULL]"  # what the products read as no path at all


def script(properties):
    """One line, as a table's cell can't hold more."""
    names = ", ".join('"%s"' % name for name in properties)
    return ("var names = [%s]; for (var i = 0; i < names.length; ++i) { "
            "var path = Session.Property(names[i]); if (path.toUpperCase() != \"%s\") { "
            "Session.Property(names[i]) = path.replace(/\\[\\\\(.)\\]|\\[(\\w+)\\]/g, "
            "function (whole, letter, key) { return letter ? letter : Session.Property(key); }); } }"
            % (names, NO_PATH))
