# Who is measured, in the order of the tables, and what each is called there. For those who read the
# medians of scripts/bench.

function initNames() {
    FS = "\t"
    whoCount = 0
    addName("zor", "zor")
    addName("floor", "floor")
    addName("hashmap", "hash map")
    addName("glib", "GKeyFile")
    addName("libconfig", "libconfig")
    addName("sqlite", "SQLite")
    addName("libxml2", "libxml2")
    addName("pugixml", "pugixml")
    addName("libyang", "libyang")
    addName("libyanghandle", "libyang, by node")
    addName("libyangparsed", "libyang, not validated")
}

function addName(who, called) {
    whos[++whoCount] = who
    title[who] = called
}
