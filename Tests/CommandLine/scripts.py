"""States that a few lines of a shell make, run in the working copy: ROOT is the folder above it, svn tells nothing."""

import os
import subprocess

SCRIPTS = {
    # Names that a shell, a URL or a revision's reader takes for something else, versioned, changed and not versioned.
    "named": r"""
        mkdir 'D@2' 'D@2/%20' && for name in '100% #1?' "a&b<c>'d\"" %41 ^caret @at at@ -- '[x]*' 'back\slash' '~' \
                ' blanks ' 'x:y;z' HEAD 'D@2/%20/a+b=c,d'; do
            echo "$name" > "./$name"; svn add --parents -- "./$name@"
        done
        svn propset color "$(printf ' a\n\tb ')" 'D@2@' %41 && svn commit -m odd && svn update
        echo more | tee -a %41 @at '100% #1?' 'D@2/%20/a+b=c,d' '~' && svn move 'back\slash' 'D@2/^' && svn delete -- --@
        svn changelist 'a list' HEAD && svn lock '[x]*' && touch "$(printf 'new\nline')" "$(printf 'tab\tbed')" '?' ./-x
        svn propset svn:ignore "$(printf '\\?\n*#*\n[!a]x')" 'D@2@' && touch 'D@2/#1' 'D@2/bx' 'D@2/ax'""",
    # Items in the place of others, on each other, and within what was copied or moved.
    "replaced": """
        svn delete iota A/B keywords && cp binary iota && svn add iota && svn copy A/C A/B && svn copy A/mu keywords
        svn copy A A2 && echo changed >> A2/mu && svn delete A2/C/moved && mkdir A2/C/new && svn add A2/C/new
        svn copy iota A2/C/moved && svn move 'name with space' named && svn mkdir named/sub
        svn move named/at@sign@ named/sub/x && svn propset color x named A/C && echo more >> named/sub/x
        svn delete --keep-local binary && svn move A2 A3 && svn copy ^/branches/one/A A4 && rm A4/mu
        svn delete A4/C/doomed && svn propset color copied A4/B/lambda""",
    # What is not there, not what it was, or not as it is recorded.
    "damaged": r"""
        svn update --set-depth exclude 'name with space' && svn copy A A2 && svn propset color red A/mu && rm -r A/C iota
        mkdir iota && rm -r A2/B && echo > A2/B && rm A2/mu && ln -s nowhere A2/mu 
        for name in keywords binary; do
            sum=$(command svn cat $name@BASE --ignore-keywords | sha1sum); text=.svn/pristine/${sum:0:2}/${sum:0:40}.svn-base
            chmod u+w $text && if [ $name = binary ]; then echo broken > $text; else rm $text; fi
        done
        mkdir .svn/tmp/left && touch .svn/tmp/svn-x A/unversioned && touch -d 2001-01-01 A/mu && svn delete --keep-local A/B""",
    # A user's configuration, and properties that a folder hands down.
    "configured": r"""
        mkdir -p $ROOT/home/.subversion && printf '%s\n' '[auth]' 'store-passwords = no' '[helpers]' \
            "editor-cmd = $ROOT/editor" 'diff-cmd = diff' 'diff-extensions = -u -p' "merge-tool-cmd = true" '[miscellany]' \
            'global-ignores = *.x  *~ folder' 'log-encoding = ISO-8859-1' 'use-commit-times = yes' 'no-unlock = on' \
            "mime-types-file = $ROOT/types" 'preserved-conflict-file-exts = txt t*' 'enable-auto-props = TRUE' \
            'interactive-conflicts = no' 'memory-cache-size = 1' '[auto-props]' '* = color=auto' \
            '*.txt = svn:eol-style=native;svn:keywords=Id Rev' '*.sh = svn:executable' > $ROOT/home/.subversion/config
        printf '%s\n' '[groups]' 'all = *' '[all]' 'http-proxy-host = 127.0.0.1' 'http-proxy-port = 1' '[global]' \
            'store-plaintext-passwords = no' 'http-timeout = x' > $ROOT/home/.subversion/servers
        printf '%s\n' 'text/x-odd odd' 'image/x-mine mine  own' > $ROOT/types && svn propset svn:global-ignores '*.y' .
        svn propset svn:auto-props "$(printf '*.txt = svn:keywords=URL;color = dir\n*.own = empty=')" A && svn commit -m own
        svn update && mkdir folder A/folder && echo '$Rev$' | tee a.txt A/b.txt A/run.sh A/c.odd A/d.own > A/folder/e.txt
        touch a.x a.y A/b.y 'A/c~' A/mu.tmp && echo changed >> keywords && svn update -r 3 iota && echo mine > iota""",
    # Externals of every form, changed within, one in another, one in the way and one no longer wanted.
    "external": r"""
        svn propset svn:externals "$(printf '%s\n' '^/branches/one/iota@3 file' '-r3 ^/branches/one/A pinned' \
            '/repository/trunk x' '^/trunk/A/C deep/er' '//nowhere/x y' '^/branches/one/iota A/at' )" . ; svn update
        svn propset svn:externals "$(printf '%s\n' '^/trunk/A/B inner' '../branches/one/keywords words' '# none' \
            "ROOT/repository/trunk/A/C 'two words'")" A/C && svn commit -m externals; svn update; svn propset color x A/C/inner
        echo more | tee -a pinned/mu A/C/inner/x deep/er/moved > A/C/words; svn add A/C/inner/x; mkdir pinned/new
        svn propset svn:externals "$(printf '%s\n' '^/branches/one/A/C A/B/one' '-r4 ^/branches/one/A pinned')" .; touch A/at""",
    # Two branches that were merged into each other, also by parts, changed here and with something left to merge.
    "merged": """
        svn copy ^/trunk@4 ^/branches/two -m copied && svn switch --ignore-ancestry ^/branches/two && echo two >> A/mu
        svn commit -m 'two mu' && echo two >> keywords && svn commit -m 'two keywords' && svn switch ^/trunk
        svn merge -c 8 ^/branches/two/A A && svn commit -m one && svn update && svn merge -c 9 ^/branches/two
        svn commit -m words && svn switch ^/branches/two && svn merge -r 4:11 ^/trunk --accept working && svn commit -m synchronise
        echo again >> A/mu && svn commit -m again && svn move A/C/moved A/lambda
        svn commit -m moved; svn switch ^/trunk
        svn merge -c -3 A/mu --accept working; svn merge --record-only -c 2 ^/branches/one 'name with space'""",
    # Items of every kind, one in each state, as an older machine left them.
    "sampled": """
        touch $ROOT/utf-8 && export LC_ALL=C.UTF-8 && rm -r $ROOT/repository .svn *
        tar -C $ROOT -xzf $SAMPLES/1.14.tar.gz && mv $ROOT/1.14/repo $ROOT/repository
        cp -R $ROOT/1.14/wc/. . && rm -r $ROOT/1.14 && command svn relocate file://$ROOT/repository/trunk""",
    # Folders and files of each depth, some of them at another revision, switched or left out.
    "deep": """
        svn update --set-depth immediates && svn update --set-depth exclude 'name with space' binary
        svn update --set-depth immediates A && svn update --set-depth exclude A/C
        svn update --set-depth empty A/B && svn switch --depth empty ^/branches/one/A/B A/B
        svn update -r 2 A/mu && svn update -r 3 --depth files . && svn mkdir A/new && touch A/new/x && svn propset color x A/B""",
}


def run(script, wc, environment):
    samples = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../Samples")
    root = os.path.dirname(wc)
    # What is not to be had, an external or a merge in conflict, is a part of a state.
    subprocess.run(["/bin/bash", "-c", "svn() { command svn -q --non-interactive \"$@\" 2> /dev/null; }\n" + script], cwd=wc,
                   env={**environment, "ROOT": root, "SAMPLES": samples}, check=True, stdout=subprocess.DEVNULL)
