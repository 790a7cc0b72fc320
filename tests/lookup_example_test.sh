#!/bin/bash
# An example of the plain interface, its command in the arguments: finds a title of the sample site,
# and says why it finds nothing.
set -u
"$@" 'The Paper Lighthouse' | grep -q '^The Paper Lighthouse (2011)$' || exit 1
status=0
said=$("$@" zqxjvw 2>&1 >/tmp/found) || status=$?
[ "$status" -eq 1 ] && [ -n "$said" ] && [ ! -s /tmp/found ]
