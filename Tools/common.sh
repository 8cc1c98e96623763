# Shared by the project's shell commands: progress lines, and a closing line that always comes.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
started=$SECONDS

say() { printf '\n== %s (%ss)\n' "$*" "$((SECONDS - started))"; }

# finish_with NAME: prints NAME's verdict as the last line, whatever ended the script.
finish_with() {
    finish_name=$1
    trap 'finish_status=$?; if [ "$finish_status" -eq 0 ]; then
              printf "\n%s: passed in %ss\n" "$finish_name" "$((SECONDS - started))"
          else
              printf "\n%s: FAILED (exit code %s) after %ss\n" "$finish_name" "$finish_status" "$((SECONDS - started))"
          fi' EXIT
}

jobs_for_build() { nproc 2>/dev/null || echo 2; }
# One more: a test often waits, for a server or until Subversion can tell two times of a file apart.
jobs_for_tests() { echo $(($(jobs_for_build) + 1)); }
