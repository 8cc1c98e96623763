# Shared by the project's shell commands: progress lines, and a closing line that always comes.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
started=$SECONDS

say() { printf '\n== %s (%ss)\n' "$*" "$((SECONDS - started))"; }

# work_in_memory: has temporary files made in memory, where there is room and programs can be run: tests make thousands
# of small repositories, and most of their time Subversion would wait for a disk.
work_in_memory() {
    in_memory=$(mktemp -d /dev/shm/hsvn-XXXXXX 2>/dev/null) || { in_memory= && return; }
    chmod 755 "$in_memory" # servers and tests that lay down the rights of root must get through
    if [ "$(df --output=avail -k "$in_memory" | tail -1)" -gt 2000000 ] && cp /bin/true "$in_memory" && "$in_memory/true"
    then
        export TMPDIR=$in_memory
    fi 2>/dev/null
}

# finish_with NAME: prints NAME's verdict as the last line, whatever ended the script.
finish_with() {
    finish_name=$1
    trap 'finish_status=$?; [ -z "${in_memory:-}" ] || rm -rf "$in_memory"; if [ "$finish_status" -eq 0 ]; then
              printf "\n%s: passed in %ss\n" "$finish_name" "$((SECONDS - started))"
          else
              printf "\n%s: FAILED (exit code %s) after %ss\n" "$finish_name" "$finish_status" "$((SECONDS - started))"
          fi' EXIT
}

jobs_for_build() { nproc 2>/dev/null || echo 2; }
# One more: a test often waits, for a server or until Subversion can tell two times of a file apart.
jobs_for_tests() { echo $(($(jobs_for_build) + 1)); }
