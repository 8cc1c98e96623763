#include "WorkingCopyDatabase.h"

#include "Command.h"

void alterWorkingCopyDatabase(const std::string& workingCopy, const std::vector<std::string>& statements)
{
    std::vector<std::string> command{"python3", "-c",
                                     "import sqlite3, sys\n"
                                     "database = sqlite3.connect(sys.argv[1] + '/.svn/wc.db')\n"
                                     "for statement in sys.argv[2:]: database.execute(statement)\n"
                                     "database.commit()",
                                     workingCopy};
    command.insert(command.end(), statements.begin(), statements.end());
    mustRun(command);
}
