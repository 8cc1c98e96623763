#include "EveryKindOfItem.h"

#include "Command.h"

#include <filesystem>

namespace fs = std::filesystem;

void EveryKindOfItem::make() const
{
    if (!fs::exists(workingCopy())) {
        makeRepository();
        makeChanges();
    }
}

void EveryKindOfItem::svn(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"svn", "--non-interactive", "-q"});
    mustRun(arguments);
}

void EveryKindOfItem::makeRepository() const
{
    const std::string layout = beside("layout");
    for (const char* name :
         {"normal",       "modified",      "propmod",       "bothmod",         "deleted",      "missing",
          "replaced",     "moved",         "copied",        "locked",          "broken",       "changelist",
          "textconflict", "bothconflict",  "goneconflict",  "cleanconflict",   "propconflict", "treeconflict",
          "obstructed",   "blank name",    "per%cent",      "outofdate",       "remotelygone", "resolvedbyhand",
          "keptlocal",    "deletedlocked", "deletedlisted", "deletedswitched", "deletedinway"})
    {
        writeFile(layout + "/" + name, name);
        writeFile(layout + "/dir/" + name, name);
        writeFile(layout + "/deletedtree/deep/" + name, name);
        writeFile(layout + "/copiedtree/deep/" + name, name);
    }
    for (const char* name :
         {"propdir", "missingdir", "obstructeddir", "sparse", "switchedto", "deleteddir", "deletedsparse", "keptdir",
          "externals", "dirconflict", "conflictsinside", "treeconflictsinside", "replaceddir", "replacedlocked",
          "mixedtree/deep", "mixedtree/old", "deletedexternals", "lostexternals", "copiedexternals"})
    {
        writeFile(layout + "/" + name + "/child", name);
    }
    fs::create_symlink("normal", layout + "/link");
    svn({"import", layout, url(), "-m", "layout"});
    checkOut("wc");
    svn({"propset", "svn:eol-style", "native", item("normal"), item("dir/modified")});
    svn({"propset", "svn:externals", "^/dir extdir\n^/normal extfile\n-r2 ^/modified@2 pinned", item("externals")});
    svn({"propset", "mentions", "svn:externals", item("propdir")});
    svn({"propset", "svn:ignore", "*.o", workingCopy()});
    svn({"propset", "color", "red", item("deletedlisted"), item("deletedtree"), item("deletedtree/deep/normal")});
    svn({"commit", workingCopy(), "-m", "properties"});
    svn({"update", workingCopy()});
    svn({"propset", "svn:externals", "^/normal external", item("deletedexternals"), item("lostexternals"),
         item("copiedexternals")});
    svn({"commit", workingCopy(), "-m", "externals that are never checked out"});
}

void EveryKindOfItem::makeChanges() const
{
    const std::string other = checkOut("other");
    for (const char* name : {"textconflict", "bothconflict", "goneconflict", "cleanconflict", "outofdate",
                             "resolvedbyhand", "conflictsinside/child", "treeconflictsinside/child"})
    {
        writeFile(other + "/" + name, "theirs");
    }
    svn({"propset", "color", "theirs", other + "/propconflict", other + "/dirconflict", other + "/bothconflict"});
    svn({"remove", other + "/treeconflict", other + "/remotelygone"});
    writeFile(other + "/remotelyadded", "new");
    svn({"add", other + "/remotelyadded"});
    svn({"commit", other, "-m", "theirs"});

    for (const char* name :
         {"modified", "bothmod", "dir/modified", "textconflict", "bothconflict", "goneconflict", "cleanconflict",
          "treeconflict", "propconflict", "resolvedbyhand", "copiedtree/deep/modified", "conflictsinside/child"})
    {
        writeFile(item(name), "mine");
    }
    svn({"propset", "color", "mine", item("propmod"), item("bothmod"), item("propdir"), item("propconflict"),
         item("dirconflict"), item("bothconflict")});
    svn({"remove", item("treeconflictsinside/child")});
    svn({"update", item("conflictsinside"), item("treeconflictsinside"), item("textconflict"), item("bothconflict"),
         item("goneconflict"), item("cleanconflict"), item("propconflict"), item("treeconflict"), item("dirconflict"),
         item("resolvedbyhand")});
    for (const auto& entry : fs::directory_iterator{workingCopy()}) {
        const auto name = entry.path().filename().string();
        if (name.starts_with("resolvedbyhand.")) {
            fs::remove(entry.path());
        }
    }
    svn({"remove", item("deleted"), item("deleteddir"), item("deletedtree"), item("dir/deleted")});
    svn({"remove", "--keep-local", item("keptlocal")});
    fs::remove(item("goneconflict"));
    writeFile(item("cleanconflict"), "theirs");
    makeDeletionsAndAdditions();
    svn({"mkdir", item("added")});
    fs::remove(item("missing"));
    fs::remove_all(item("missingdir"));
    svn({"remove", item("replaced")});
    writeFile(item("replaced"), "new");
    svn({"add", item("replaced")});
    svn({"move", item("moved"), item("movedto")});
    svn({"copy", item("copied"), item("copiedto")});
    svn({"copy", item("copiedtree"), item("copyoftree")});
    writeFile(item("copyoftree/deep/normal"), "changed in the copy");
    svn({"remove", item("copyoftree/deep/locked")});
    writeFile(item("copyoftree/deep/added"), "new in the copy");
    svn({"add", item("copyoftree/deep/added")});
    svn({"copy", url("dir") + "@1", item("copyfromurl")});
    svn({"propset", "color", "red", item("copyfromurl/modified")});
    makeReplacementsAndCopies();
    svn({"lock", item("locked"), item("dir/locked"), "-m", "mine"});
    svn({"lock", item("broken")});
    svn({"unlock", "--force", url("broken")});
    svn({"lock", url("per%25cent")});
    svn({"changelist", "list", item("changelist"), item("dir/normal")});
    fs::remove(item("obstructed"));
    fs::create_directory(item("obstructed"));
    fs::remove_all(item("obstructeddir"));
    writeFile(item("obstructeddir"), "a file");
    svn({"update", "--set-depth", "empty", item("sparse")});
    svn({"update", "--set-depth", "exclude", item("dir/copied")});
    svn({"switch", "--ignore-ancestry", url("dir"), item("switchedto")});
    writeFile(item("added/child"), "child");
    svn({"add", item("added/child")});
    writeFile(item("unversioned/child"), "child");
    writeFile(item("ignored.o"), "object");
    writeFile(item("blank name"), "changed");
    fs::remove(item("link"));
    fs::create_symlink("modified", item("link"));
    fs::remove(item("copyofexternals/child")); // as if the server had withheld it from the copy
    mustRun({"sqlite3", item(".svn/wc.db"),
             "UPDATE nodes SET presence = 'incomplete' WHERE local_relpath = 'copiedtree/deep';"
             "UPDATE nodes SET presence = 'incomplete', kind = 'unknown', checksum = NULL"
             " WHERE local_relpath = 'copyofexternals/child'"});
}

void EveryKindOfItem::makeReplacementsAndCopies() const
{
    svn({"lock", item("replacedlocked/child")});
    for (const char* name : {"replaceddir", "replacedlocked/child"}) {
        svn({"remove", "--force", item(name)});
    }
    svn({"mkdir", item("replaceddir")});
    for (const char* name : {"replaceddir/child", "replacedlocked/child"}) {
        writeFile(item(name), "new");
        svn({"add", item(name)});
    }
    svn({"update", "-r1", item("mixedtree/old")});
    svn({"copy", item("mixedtree"), item("mixedcopy")});
    svn({"copy", item("mixedcopy/deep"), item("mixedcopy/again")});
    svn({"move", item("copyfromurl/deleted"), item("copyfromurl/movedwithin")});
    svn({"copy", item("copiedexternals"), item("copyofexternals")});
    svn({"remove", item("deletedexternals")});
    svn({"propdel", "svn:externals", item("lostexternals")});
    svn({"propset", "svn:externals", "^/normal new", item("added")});
}

void EveryKindOfItem::makeDeletionsAndAdditions() const
{
    svn({"lock", item("deletedlocked")});
    svn({"changelist", "list", item("deletedlisted")});
    svn({"switch", "--ignore-ancestry", url("dir/normal"), item("deletedswitched")});
    svn({"update", "--set-depth", "empty", item("deletedsparse")});
    svn({"remove", "--force", item("deletedlocked"), item("deletedlisted"), item("deletedswitched"),
         item("deletedsparse"), item("deletedinway")});
    svn({"remove", "--keep-local", item("keptdir")});
    fs::create_directory(item("deletedinway"));
    for (const char* name : {"added%plain", "addedlisted", "addedwithproperty", "addedmissing", "addedobstructed"}) {
        writeFile(item(name), name);
        svn({"add", item(name)});
    }
    fs::create_symlink("normal", item("addedlink"));
    svn({"add", item("addedlink")});
    svn({"changelist", "list", item("addedlisted")});
    svn({"mkdir", item("addeddir"), item("addeddir/deep"), item("addeddirmissing")});
    svn({"propset", "color", "red", item("addedwithproperty"), item("addeddir/deep")});
    fs::remove(item("addedmissing"));
    fs::remove(item("addedobstructed"));
    fs::create_directory(item("addedobstructed"));
    fs::remove(item("addeddirmissing"));
}
