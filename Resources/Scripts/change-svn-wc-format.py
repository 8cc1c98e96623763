#!/usr/bin/python
"""Changes the format of a Subversion working copy.

    change-svn-wc-format.py WORKING_COPY TARGET [--force]

TARGET is the Subversion line (major.minor) whose format the working copy is to have:

    1.4: 8    1.5: 9    1.6: 10    1.7: 29    1.8 to 1.14: 31

Formats 8, 9 and 10 are converted here, in both directions. A conversion downwards is refused when it would
lose what the older line cannot store (depths, exclusions, changelists, deletions that keep the local copy,
tree conflicts, the mark of a file external); --force drops that. Formats 29 and 31 are made by the installed
Subversion; there is no way back from them. The working copies of externals are working copies of their own,
left alone here; 'svn upgrade' takes those along that it knows.

Nothing is written before the whole tree has been read and found convertible. A conversion that was killed
leaves the old files in place, or a tree that is locked for Subversion and that the next run, whatever its
target, completes first.

Exit status: 0 when the working copy has the format of TARGET, 1 when it has not, 2 for a wrong usage.
"""

import argparse
import fcntl
import os
import re
import shutil
import stat
import struct
import subprocess
import sys
from dataclasses import dataclass

PROGRAM = "change-svn-wc-format"

FORMATS = {"1.4": 8, "1.5": 9, "1.6": 10, "1.7": 29} | {f"1.{minor}": 31 for minor in range(8, 15)}
DATABASE_FORMATS = (29, 31)

# A record of an entries file is a list of fields, told apart by their place. Each format only adds at the end.
FIELD_COUNTS = {8: 30, 9: 34, 10: 36}
NAME, KIND, URL, REPOSITORY, SCHEDULE = 0, 1, 3, 4, 5
CACHABLE_PROPERTIES, COPIED, COPYFROM_URL, DELETED, ABSENT = 13, 19, 20, 22, 23
CHANGELIST, KEEP_LOCAL, DEPTH, TREE_CONFLICTS, FILE_EXTERNAL = 30, 31, 33, 34, 35  # 32: a size, only a cache

# What 1.4 and 1.5 record in a directory's own entry, and 1.6 takes for granted.
CACHED_PROPERTIES = b"svn:special svn:externals svn:needs-lock"

# The oldest format that can store each depth.
DEPTHS = {b"": 8, b"infinity": 8, b"empty": 9, b"files": 9, b"immediates": 9, b"exclude": 10}

ADMIN, ENTRIES, FORMAT, LOCK, DATABASE = b".svn", b"entries", b"format", b"lock", b"wc.db"
UPGRADE = os.path.join(b"tmp", b"wcng")  # where 'svn upgrade' makes the new database
SQLITE_LOCK_BYTES = (512, 0x40000000)

NO_PROPERTIES = b"END\n"  # the contents of a property file

# Written beside, then renamed.
NEW_ENTRIES, NEW_FORMAT, NEW_PROPERTIES = b"entries.changed", b"format.changed", b"properties.changed"
JOURNAL, NEW_JOURNAL = b"format-change", b"format-change.new"


class Refusal(Exception):
    """The reason, in words for the user, why a path cannot be converted."""

    def __init__(self, path, reason):
        super().__init__(f"'{os.fsdecode(path)}': {reason}")


@dataclass
class Directory:
    """A versioned directory with its entries file as it was read."""

    path: bytes
    format: int
    data: bytes
    records: list

    def admin(self, *names):
        return os.path.join(self.path, ADMIN, *names)


# Reading


def open_plain(path, flags=os.O_RDONLY):
    """Opens a file for bytes, and nothing else: a pipe would wait for its other end, a device do who knows what."""
    if not stat.S_ISREG(os.stat(path).st_mode):
        raise Refusal(path, "is not a plain file")
    # Whatever took the file's place since then.
    descriptor = os.open(path, flags | os.O_NONBLOCK | os.O_CLOEXEC)
    if not stat.S_ISREG(os.fstat(descriptor).st_mode):
        os.close(descriptor)
        raise Refusal(path, "is not a plain file")
    return os.fdopen(descriptor, "rb" if flags == os.O_RDONLY else "r+b")


def read_file(path, size=-1):
    with open_plain(path) as file:
        return file.read(size)


def has_content(path):
    return os.path.exists(path) and os.path.getsize(path) > 0


def admin_format(path):
    """The format number of a directory; None when it is not a working copy."""
    database = os.path.join(path, ADMIN, DATABASE)
    if os.path.exists(database):
        header = read_file(database, 64)
        if len(header) < 64 or not header.startswith(b"SQLite format 3\0"):
            raise Refusal(database, "is not a working-copy database")
        return struct.unpack(">I", header[60:64])[0]
    for name in (ENTRIES, FORMAT):  # formats up to 6 have XML in the first
        try:
            line = read_file(os.path.join(path, ADMIN, name)).split(b"\n", 1)[0]
        except (FileNotFoundError, NotADirectoryError):
            continue
        if re.fullmatch(rb"[0-9]{1,9}", line):
            return int(line)
    return None


def unescape(field):
    return re.sub(rb"\\x([0-9a-fA-F]{2})", lambda match: bytes([int(match[1], 16)]), field)


def is_name(name):
    """True for what can name an item of a directory, and for the empty name of the directory itself."""
    return b"/" not in name and b"\0" not in name and name not in (b".", b"..", ADMIN)


def parse_entries(path, data, version):
    """The records of an entries file, each filled up to the number of fields of the newest format."""
    *texts, rest = data.partition(b"\n")[2].split(b"\n\f\n")
    if rest:
        raise Refusal(path, f"record {len(texts) + 1} has no end")
    records = []
    for number, text in enumerate(texts, 1):
        fields = text.split(b"\n")
        if any(fields[FIELD_COUNTS[version]:]):
            raise Refusal(path, f"record {number} has more fields than format {version} knows")
        fields = (fields + [b""] * FIELD_COUNTS[10])[:FIELD_COUNTS[10]]
        if fields[KIND] not in (b"file", b"dir"):
            raise Refusal(path, f"record {number} has the unknown kind '{os.fsdecode(fields[KIND])}'")
        if fields[DEPTH] not in DEPTHS:
            raise Refusal(path, f"record {number} has the unknown depth '{os.fsdecode(fields[DEPTH])}'")
        if not is_name(unescape(fields[NAME])):
            raise Refusal(path, f"record {number} has the wrong name '{os.fsdecode(fields[NAME])}'")
        records.append(fields)
    if not any(fields[NAME] == b"" and fields[KIND] == b"dir" for fields in records):
        raise Refusal(path, "has no entry for the directory itself")
    return records


def read_directory(path):
    """Reads a versioned directory, which has to have one of the formats that are converted here."""
    version = admin_format(path)
    if version is None:
        raise Refusal(path, "is not a working copy")
    if version < 8:
        raise Refusal(path, f"has format {version}, which is older than Subversion 1.4 and cannot be converted")
    if version not in FIELD_COUNTS:
        raise Refusal(path, f"has format {version}, which cannot be converted")
    entries = os.path.join(path, ADMIN, ENTRIES)
    data = read_file(entries)
    return Directory(path, version, data, parse_entries(entries, data, version))


def is_hidden(record):
    """True for a subdirectory that is only remembered: what lies at its path is not part of the tree."""
    deleted = record[DELETED] and record[SCHEDULE] not in (b"add", b"replace")
    return bool(deleted or record[ABSENT] or record[DEPTH] == b"exclude")


def subdirectories(directory):
    for record in directory.records:
        if record[NAME] and record[KIND] == b"dir" and not is_hidden(record):
            yield os.path.join(directory.path, unescape(record[NAME]))


def is_versioned_directory(path):
    """False for what is missing or obstructed. A link to another working copy, which Subversion follows, is refused."""
    if not os.path.isdir(os.path.join(path, ADMIN)):
        return False
    if os.path.islink(path):
        raise Refusal(path, "is a symbolic link in the place of a versioned directory")
    return True


def walk(root):
    """All versioned directories of a working copy, each before those below it."""
    waiting, seen = [root], set()
    while waiting:
        path = waiting.pop()
        real = os.path.realpath(path)
        if real not in seen:
            seen.add(real)
            directory = read_directory(path)
            yield directory
            waiting += [child for child in subdirectories(directory) if is_versioned_directory(child)]


def check_top(root):
    real = os.path.realpath(root)
    parent = os.path.dirname(real)
    if admin_format(parent) in FIELD_COUNTS and real in subdirectories(read_directory(parent)):
        raise Refusal(root, f"is part of the working copy '{os.fsdecode(parent)}', "
                            "which can only be converted as a whole")


def check_plain(area):
    """Refuses links, pipes, devices and sockets in an administrative area, in which Subversion never makes any."""
    if os.path.islink(area):
        raise Refusal(area, "is a symbolic link")
    with os.scandir(area) as items:
        for item in items:
            if item.is_dir(follow_symlinks=False):
                check_plain(item.path)
            elif not item.is_file(follow_symlinks=False) and not is_own_lock(item.path):
                raise Refusal(item.path, "is not a plain file")


def check_idle(directory):
    if os.path.lexists(directory.admin(LOCK)) and not has_own_lock(directory):
        raise Refusal(directory.path, "is locked; let Subversion clean it up first")
    for name in os.listdir(directory.admin()):
        if re.fullmatch(rb"log(\.[0-9]+)?|KILLME", name):
            raise Refusal(directory.path, f"has an unfinished operation ('{os.fsdecode(name)}'); "
                                          "let Subversion clean it up first")


def read_tree(root):
    """The versioned directories of a working copy in which no operation is under way."""
    check_top(root)
    directories = list(walk(root))
    for directory in directories:
        check_plain(directory.admin())
        check_idle(directory)
    return directories


# Converting in memory


def canonical_url(url):
    """A URL as 1.6 insists on: scheme and host in lower case, no empty or '.' segments, no slash at the end."""
    match = re.fullmatch(rb"([^/:]+://)([^/@]*@)?([^/]*)(.*)", url, re.DOTALL)
    if not match:
        return url
    scheme, user, host, path = match.groups(b"")
    segments = [segment for segment in path.split(b"/") if segment not in (b"", b".")]
    return scheme.lower() + user + host.lower() + b"".join(b"/" + segment for segment in segments)


def losses(record, target):
    """What a record holds that the target format cannot store, in words."""
    if DEPTHS[record[DEPTH]] > target:
        yield "the depth '%s'" % os.fsdecode(record[DEPTH])
    if target < 9 and record[CHANGELIST]:
        yield "the changelist '%s'" % os.fsdecode(unescape(record[CHANGELIST]))
    if target < 9 and record[KEEP_LOCAL]:
        yield "the wish to keep the local copy after the deletion"
    if target < 10 and record[TREE_CONFLICTS]:
        yield "the tree conflicts of its items"
    if target < 10 and record[FILE_EXTERNAL]:
        yield "being a file external (it stays as a switched file)"


def convert_record(record, source, target):
    record = record[:FIELD_COUNTS[target]]
    if target > 8 and DEPTHS[record[DEPTH]] > target:
        record[DEPTH] = b""
    own = record[NAME] == b""
    if target == 10 and source < 10:
        for field in (URL, REPOSITORY, COPYFROM_URL):
            record[field] = canonical_url(record[field])
        if own and record[CACHABLE_PROPERTIES] == CACHED_PROPERTIES:
            record[CACHABLE_PROPERTIES] = b""
    if target < 10 and source == 10 and own and not record[CACHABLE_PROPERTIES]:
        record[CACHABLE_PROPERTIES] = CACHED_PROPERTIES
    return record


def format_entries(records, version):
    return b"%d\n" % version + b"".join(b"\n".join(record).rstrip(b"\n") + b"\n\f\n" for record in records)


def replaced_pristines(directory):
    """The pristine files of items replaced without history: (ordinary name, name for reverting, holds properties)."""
    for record in directory.records:
        name = unescape(record[NAME])
        if record[SCHEDULE] != b"replace" or record[COPIED]:
            continue
        if not name:
            yield directory.admin(b"dir-prop-base"), directory.admin(b"dir-prop-revert"), True
        elif record[KIND] == b"file":
            for folder in (b"text-base", b"prop-base"):
                base = directory.admin(folder, name)
                yield base + b".svn-base", base + b".svn-revert", folder == b"prop-base"


def pristine_changes(directory, target):
    """What to do with the pristine files of items replaced without history: (old path or None, new path or None).

    1.6 keeps them under the name for reverting, with a file for the properties even when there are none;
    the lines before it keep them under the ordinary name. 'svn upgrade' gives up without the former.
    """
    changes = []
    for base, revert, holds_properties in replaced_pristines(directory):
        has_base, has_revert = os.path.exists(base), os.path.exists(revert)
        if target < 10 and has_revert and not has_base:
            empty = holds_properties and read_file(revert) == NO_PROPERTIES
            changes.append((revert, None if empty else base))
        elif target == 10 and not has_revert and (has_base or holds_properties):
            changes.append((base if has_base else None, revert))
    return changes


def check_losses(root, directories, target):
    lines = []
    for directory in directories:
        for record in directory.records:
            path = os.path.join(directory.path, unescape(record[NAME])).rstrip(b"/")
            lines += [f"    '{os.fsdecode(path)}': {loss}" for loss in losses(record, target)]
    if lines:
        raise Refusal(root, f"cannot get format {target} without loss; --force would drop:\n" + "\n".join(lines))


# Converting on disk


def is_own_lock(path):
    """Subversion's locks are plain files. Ours is a symbolic link, made in one step and told apart after a kill."""
    return os.path.basename(path) == LOCK and os.path.islink(path) and os.readlink(path) == ENTRIES


def has_own_lock(directory):
    return is_own_lock(directory.admin(LOCK))


def lock_directory(directory):
    if not has_own_lock(directory):
        try:
            os.symlink(ENTRIES, directory.admin(LOCK))
        except FileExistsError:
            raise Refusal(directory.path, "has been locked in the meantime") from None
    if read_file(directory.admin(ENTRIES)) != directory.data:
        raise Refusal(directory.path, "has been changed in the meantime")


def remove(path):
    try:
        os.unlink(path)
    except FileNotFoundError:
        pass


def release(directories):
    """Removes our locks and what was written beside, of this run or of one that was killed."""
    for directory in directories:
        for name in (NEW_ENTRIES, NEW_FORMAT, NEW_PROPERTIES):
            remove(directory.admin(name))
        if has_own_lock(directory):
            remove(directory.admin(LOCK))


def write_like(model, path, data):
    """Writes a new file with the permissions and, for the superuser, the owner of an existing one."""
    remove(path)
    status = os.stat(model)
    with open(path, "xb") as file:
        file.write(data)
        os.fchmod(file.fileno(), status.st_mode & 0o7777)
        if os.geteuid() == 0:
            os.fchown(file.fileno(), status.st_uid, status.st_gid)


def stage(directory, target):
    records = [convert_record(record, directory.format, target) for record in directory.records]
    entries = directory.admin(ENTRIES)
    write_like(entries, directory.admin(NEW_ENTRIES), format_entries(records, target))
    if target < 10:
        write_like(entries, directory.admin(NEW_FORMAT), b"%d\n" % target)


def switch(directory, target):
    """Puts the staged files in place, the entries file last: it decides which format the directory has."""
    for old, new in pristine_changes(directory, target):
        if new is None:
            os.unlink(old)
        elif old is None:
            write_like(directory.admin(ENTRIES), directory.admin(NEW_PROPERTIES), NO_PROPERTIES)
            os.replace(directory.admin(NEW_PROPERTIES), new)
        else:
            os.rename(old, new)
    if target < 10:
        os.replace(directory.admin(NEW_FORMAT), directory.admin(FORMAT))
    else:
        remove(directory.admin(FORMAT))
    os.replace(directory.admin(NEW_ENTRIES), directory.admin(ENTRIES))


def write_journal(root, target, force):
    """From here on the conversion goes only forwards, in this run or in the next."""
    os.sync()  # what was written beside has to survive whatever the journal survives
    new = os.path.join(root, ADMIN, NEW_JOURNAL)
    with open(new, "xb") as file:
        file.write(b"%d %s\n" % (target, b"force" if force else b"careful"))
        file.flush()
        os.fsync(file.fileno())
    os.replace(new, os.path.join(root, ADMIN, JOURNAL))
    folder = os.open(os.path.join(root, ADMIN), os.O_RDONLY)
    try:
        os.fsync(folder)
    finally:
        os.close(folder)


def convert_tree(root, target, force):
    directories = read_tree(root)
    changing = [directory for directory in directories
                if directory.format != target or pristine_changes(directory, target)]
    if not force:
        check_losses(root, changing, target)
    journal = os.path.join(root, ADMIN, JOURNAL)
    resumed = os.path.exists(journal)
    try:
        for directory in changing:
            lock_directory(directory)
        for directory in changing:
            stage(directory, target)
        if changing:
            write_journal(root, target, force)
    except BaseException:
        if not resumed and not os.path.exists(journal):
            release(directories)
        raise
    for directory in reversed(changing):
        switch(directory, target)
    if changing or resumed:
        os.sync()
    release(directories)
    remove(journal)


def complete(root, force):
    """Completes a conversion that was killed after its journal was written."""
    journal = os.path.join(root, ADMIN, JOURNAL)
    remove(os.path.join(root, ADMIN, NEW_JOURNAL))
    if os.path.exists(journal):
        match = re.fullmatch(rb"(8|9|10) (force|careful)\n", read_file(journal))
        if not match:
            raise Refusal(journal, "is not a journal of this program")
        convert_tree(root, int(match[1]), force or match[2] == b"force")


# Upgrading through the installed Subversion


def run_svn(root, *arguments):
    # A path in the working copy may hold any character; only a UTF-8 locale can express them all.
    environment = dict(os.environ, LC_ALL="C.UTF-8")
    try:
        result = subprocess.run(["svn", *arguments], env=environment, stdin=subprocess.DEVNULL, capture_output=True)
    except OSError as error:
        raise Refusal(root, f"cannot run the installed Subversion: {error.strerror}") from None
    if result.returncode != 0:
        message = result.stderr.decode("utf-8", "backslashreplace").strip()
        raise Refusal(root, f"'svn {arguments[0]}' failed: {message}")
    return result.stdout.decode("utf-8", "backslashreplace").strip()


def check_svn(root, line):
    """Refuses a line whose format the installed Subversion does not write."""
    installed = run_svn(root, "--version", "--quiet")
    written = FORMATS.get(".".join(installed.split(".")[:2]))
    if written not in DATABASE_FORMATS:
        raise Refusal(root, f"the installed Subversion {installed} is not one that this program can upgrade with")
    if written != FORMATS[line]:
        raise Refusal(root, f"cannot get format {FORMATS[line]} of Subversion {line}: "
                            f"the installed Subversion {installed} writes format {written}")


def discard_killed_upgrade(root):
    """Removes the locks and the new database of an 'svn upgrade' that was killed before it replaced anything."""
    database = os.path.join(root, ADMIN, UPGRADE, ADMIN, DATABASE)
    if os.path.exists(database):
        with open_plain(database, os.O_RDWR) as file:
            try:
                fcntl.lockf(file, fcntl.LOCK_EX | fcntl.LOCK_NB, *SQLITE_LOCK_BYTES)
            except (BlockingIOError, PermissionError):
                raise Refusal(root, "is being upgraded by Subversion") from None
    if os.path.exists(os.path.join(root, ADMIN, UPGRADE)):
        for directory in walk(root):
            if not has_own_lock(directory):
                remove(directory.admin(LOCK))
        shutil.rmtree(os.path.join(root, ADMIN, UPGRADE))


def upgrade(root, line):
    operand = os.path.abspath(root) + b"@"  # the path itself may hold an "@"
    admin = os.path.join(root, ADMIN)
    if os.path.exists(os.path.join(admin, DATABASE)) and os.path.exists(os.path.join(admin, UPGRADE)):
        run_svn(root, "cleanup", operand)  # completes an 'svn upgrade' that was killed in its last steps
    if admin_format(root) != FORMATS[line] or has_content(os.path.join(admin, DATABASE + b"-journal")):
        check_svn(root, line)
        run_svn(root, "upgrade", "--quiet", "--non-interactive", operand)
    if admin_format(root) != FORMATS[line]:
        raise Refusal(root, f"has format {admin_format(root)} after 'svn upgrade'")


def upgrade_entries(root, line, force):
    """Upgrades from format 8, 9 or 10. Goes by way of format 10, and back when Subversion refuses."""
    check_svn(root, line)
    formats = {directory.format for directory in read_tree(root)}
    convert_tree(root, 10, force)
    try:
        upgrade(root, line)
    except Refusal:
        if len(formats) == 1 and admin_format(root) == 10:
            discard_killed_upgrade(root)
            convert_tree(root, formats.pop(), force)
        raise


def change_format(root, line, force):
    target, source = FORMATS[line], admin_format(root)
    if source is None:
        raise Refusal(root, "is not a working copy" if os.path.exists(root) else "does not exist")
    if source in DATABASE_FORMATS and target < source:
        raise Refusal(root, f"has format {source}, which cannot be taken back to format {target}")
    check_plain(os.path.join(root, ADMIN))
    if source not in DATABASE_FORMATS:
        discard_killed_upgrade(root)
        complete(root, force)
    if target in FIELD_COUNTS:
        convert_tree(root, target, force)
    elif source in DATABASE_FORMATS:
        upgrade(root, line)
    else:
        upgrade_entries(root, line, force)
    print(f"'{os.fsdecode(root)}': has format {target}" + (f", had format {source}" if source != target else ""))


def change_format_alone(root, line, force):
    """Keeps a second run of this program off the same working copy."""
    try:
        handle = os.open(os.path.join(root, ADMIN), os.O_RDONLY | os.O_DIRECTORY)
    except (FileNotFoundError, NotADirectoryError):
        return change_format(root, line, force)
    try:
        fcntl.flock(handle, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return change_format(root, line, force)
    except BlockingIOError:
        raise Refusal(root, "is being converted by another run of this program") from None
    finally:
        os.close(handle)


def explain(error, root):
    if isinstance(error, OSError):
        # Of a failed renaming or linking, the second name is the one that could not be made.
        error = f"'{os.fsdecode(error.filename2 or error.filename or root)}': {error.strerror}"
    elif isinstance(error, KeyboardInterrupt):
        error = f"'{os.fsdecode(root)}': interrupted"
    print(f"{PROGRAM}: {error}", file=sys.stderr)
    if os.path.exists(os.path.join(root, ADMIN, JOURNAL)):
        print(f"{PROGRAM}: '{os.fsdecode(root)}': is converted in part; run this program again to complete it",
              file=sys.stderr)


def main():
    sys.stdout.reconfigure(errors="backslashreplace")
    parser = argparse.ArgumentParser(prog=PROGRAM, description="Changes the format of a Subversion working copy.")
    parser.add_argument("working_copy", type=os.fsencode, help="the top directory of the working copy")
    parser.add_argument("target", help="the Subversion line to convert to, such as 1.6")
    parser.add_argument("--force", action="store_true", help="drop what the target format cannot store")
    arguments = parser.parse_args()
    try:
        if arguments.target not in FORMATS:
            raise Refusal(arguments.target, "is not a Subversion line that this program knows (1.4 to 1.14)")
        change_format_alone(arguments.working_copy, arguments.target, arguments.force)
    except (Refusal, OSError, KeyboardInterrupt) as error:
        explain(error, arguments.working_copy)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
