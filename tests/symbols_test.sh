#!/bin/bash
# Checks the dynamic symbols of libvelawapd.so: it shows its interface and nothing else, and asks
# for its host's operations and nothing else.
# Usage: symbols_test.sh LIBRARY IMPORTED_LIST
set -euo pipefail
export LC_ALL=C

library=$1
imported_list=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failures=0

# Reports the lines of standard input, if there are any, under a heading.
report() {
  local lines
  lines=$(cat)
  [ -z "$lines" ] && return
  printf '%s:\n%s\n\n' "$1" "$lines"
  failures=$((failures + 1))
}

# The names of symbols that nm printed, templates of the standard library by their short names.
names() {
  sed -E -e 's/^[0-9a-f]* *[A-Za-z] //' -e 's/\[abi:cxx11\]//g' \
    -e 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' \
    -e 's/, std::allocator<[A-Za-z]+> >/>/g' \
    -e 's/, std::default_delete<[A-Za-z]+> >/>/g' | sort -u
}

nm -DC --defined-only "$library" | names >"$folder/defined"
sort >"$folder/exported" <<'END'
Apply(ApplyDictionarySpec&, VELA_DataSource&, VELA_DataSource const*, BpProcedure&)
FastFindDataSource::Data::IndexNames() const
FastFindDataSource::FastFindDataSource(VELA_DataSource&)
FastFindDataSource::FindVarIndex(char const*) const
FastFindDataSource::NameLess::operator()(std::pair<char const*, unsigned int> const&, std::pair<char const*, unsigned int> const&) const
FastFindDataSource::Refresh()
FastFindDataSource::operator VELA_DataSource*() const
FastFindDataSource::~FastFindDataSource()
Parse(ApplyDictionarySpec&, BpProcedure&, VELA_DataSource const&, std::unique_ptr<UserInputCaseFile>&, ProcedureDataSource&)
applydic_
END
report "Defined, but not part of the interface" < <(comm -23 "$folder/defined" "$folder/exported")
report "Part of the interface, but not defined" < <(comm -13 "$folder/defined" "$folder/exported")

# A symbol of the runtimes has a version; the compiler's hooks for them are weak.
nm -DC --undefined-only "$library" |
  grep -vE '@(GLIBC|GLIBCXX|CXXABI|GCC)_[0-9.]+$|^ *w (_ITM_|__gmon_start__)' |
  names >"$folder/undefined"
grep -vE '^(#|$)' "$imported_list" | sed 's/^? //' | sort >"$folder/known"
grep -vE '^(#|$|\? )' "$imported_list" | sort >"$folder/needed"
report "Imported, but no operation of the host" < <(comm -23 "$folder/undefined" "$folder/known")
report "An operation of the host, but not imported" < <(comm -13 "$folder/undefined" "$folder/needed")

readelf -d "$library" | sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' >"$folder/libraries"
report "Linked, but no runtime" \
  < <(grep -vE '^(libstdc\+\+|libgcc_s|libc|libm|ld-linux[-a-z0-9_]*)\.so' "$folder/libraries")

[ "$failures" -eq 0 ]
