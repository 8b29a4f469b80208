#!/bin/bash
# Checks that the layers stay apart: what each folder's sources may include.
# Usage: layers_test.sh PROJECT
set -euo pipefail
export LC_ALL=C

cd "$1"
failures=0

standard_headers='algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat
charconv chrono cinttypes climits clocale cmath codecvt compare complex concepts condition_variable
coroutine csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype
deque exception execution filesystem format forward_list fstream functional future initializer_list
iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex
new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore set
shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view
strstream syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
unordered_set utility valarray variant vector version
assert.h ctype.h errno.h fenv.h float.h inttypes.h limits.h locale.h math.h setjmp.h signal.h stdarg.h
stddef.h stdint.h stdio.h stdlib.h string.h time.h uchar.h wchar.h wctype.h'

# What the sources of a folder include, a line each: file:line:<header> or file:line:"header".
included_by() {
  find "$1" -type f \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 -r grep -nE '^[[:space:]]*#[[:space:]]*(include|include_next|import)\>' /dev/null |
    sed -E 's/^([^:]*:[0-9]+:).*(include|include_next|import)[[:space:]]*/\1/; s/[[:space:]]*(\/[/*].*)?$//'
}

# check FOLDER QUOTED ANGLED: reports what FOLDER includes besides project headers whose path starts
# as QUOTED, an extended regular expression, says, and system headers by ANGLED: standard or any.
check() {
  local folder=$1 quoted=$2 angled=$3 found
  [ -n "$(find "$folder" -name '*.h' -print -quit)" ] || {
    echo "$folder/ has no headers: is this the project?"
    failures=$((failures + 1))
    return
  }
  found=$(included_by "$folder" |
    awk -v quoted="^\"($quoted)/[^\"]+\"\$" -v angled="$angled" -v names="$standard_headers" '
      BEGIN {
        split(names, list)
        for (i in list) standard["<" list[i] ">"] = 1
      }
      {
        what = $0
        sub(/^[^:]*:[0-9]+:/, "", what)
        if (what ~ /\.\.\//) { print; next }
        if (what ~ quoted) next
        if (what ~ /^</ && (angled == "any" ? what !~ /^<(backend|host|standalone|program)\// : what in standard)) next
        print
      }')
  [ -z "$found" ] && return
  printf '%s/ must not include:\n%s\n\n' "$folder" "$found"
  failures=$((failures + 1))
}

check host 'host' standard
check backend 'host|backend/ApplyDictionary' standard
check program 'standalone|program' any

# The folders of the standalone host, each with those that it may include besides itself.
check_part() {
  check "standalone/$1" "${2:+$2|}standalone/$1" any
}
check_part Text ''
check_part Parallel ''
check_part Files 'standalone/Text'
check_part Xml 'standalone/(Text|Files)'
check_part Dictionary 'standalone/Text'
check_part Codebook 'standalone/(Text|Parallel|Files|Xml|Dictionary)'
check_part Comparison 'standalone/(Text|Files|Dictionary|Codebook)'
check_part Matching 'standalone/(Text|Dictionary)'
check_part Syntax 'standalone/(Text|Dictionary)'
check_part Host 'host|standalone/(Text|Files|Dictionary|Codebook|Syntax)'
# Two classes of one name are one to the linker, which takes the functions of either for both.
twice=$(grep -rhoE --include='*.h' '^(class|struct) \w+(::\w+)*( final)?( :.*)? \{' standalone program |
  sed -E 's/^\w+ ([A-Za-z0-9_:]*\w).*/\1/' | sort | uniq -d)
[ -z "$twice" ] || {
  echo "these classes are defined in two headers: $twice"
  failures=$((failures + 1))
}
parts=$(find standalone -mindepth 1 -maxdepth 1 -type d | wc -l)
[ "$parts" -eq 10 ] || {
  echo "standalone/ has $parts folders, not 10: say above what the others may include"
  failures=$((failures + 1))
}

[ "$failures" -eq 0 ]
