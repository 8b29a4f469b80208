#!/bin/bash
# Installs the build into a folder, and uses it from there: the program after the folder was moved,
# the CMake package and the pkg-config file by a host of its own, which passes the tests for hosts;
# and sees that these tests find hosts that are wrong.
# Usage: install_test.sh CMAKE BUILD EXAMPLES
set -euo pipefail
export LC_ALL=C.UTF-8
cmake=$1
build=$2
examples=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}
quietly() {
  "$@" >"$folder/output" 2>&1 || {
    cat "$folder/output" >&2
    fail "failed: $*"
  }
}

quietly "$cmake" --install "$build" --prefix "$folder/installed"
prefix=$folder/prefix
mv "$folder/installed" "$prefix"
(cd "$examples" && quietly "$prefix/bin/applydic" apply -c "FROM 'survey_2025.xml'" -n survey_2026.xml)

cp -r "$examples/minimal-host" "$folder/host"
quietly "$cmake" -S "$folder/host" -B "$folder/host/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
quietly "$cmake" --build "$folder/host/build"
diff - <("$folder/host/build/minimal_host" 2>&1) <<'END'
Before
  SEX: no label
  REGION: no label
warning: REGION: Missing values not applied: some values too long...
After
  SEX: Sex of the person, 1 Male, 2 Female, missing 9
  REGION: Region of residence
  Income: Yearly income
END
quietly "$folder/host/build/conformance"

# By pkg-config.
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name velawapd.pc)")
read -ra compile < <(pkg-config --cflags velawapd)
read -ra link < <(pkg-config --libs velawapd)
link+=("-Wl,-rpath,$(dirname "$PKG_CONFIG_PATH")")
cd "$folder/host"
for source in main Command Data Output Conformance; do
  quietly g++ "${compile[@]}" -c "$source.cpp"
done
for source in Conformance Layout; do
  quietly g++ "${compile[@]}" -c "$prefix/share/velawapd/conformance/$source.cpp" -o "$source.tests.o"
done
quietly g++ main.o Command.o Data.o Output.o "${link[@]}" -o by_pkg_config
quietly ./by_pkg_config

# Faults that a host may have: a file, a piece of it, and what stands in its place.
while IFS='~' read -r file right wrong; do
  RIGHT=$right WRONG=$wrong perl -0pe 's/\Q$ENV{RIGHT}\E/$ENV{WRONG}/ or die "not there: $ENV{RIGHT}\n"' \
    "$file.cpp" >Faulty.cpp
  quietly g++ "${compile[@]}" -c Faulty.cpp
  objects=()
  for source in Command Data Output; do
    [ "$source" = "$file" ] && objects+=(Faulty.o) || objects+=("$source.o")
  done
  quietly g++ Conformance.o ./*.tests.o "${objects[@]}" "${link[@]}" -o faulty
  ! ./faulty >"$folder/output" 2>&1 || fail "the tests for hosts do not see: $wrong"
done <<'END'
Data~if (!impl_->isOwn) set =~if (!set) set =
Data~{WithWidth(*value, type)}~{*value}
Data~return impl_->values.size() != before;~return true;
Data~impl_->upperCaseName = upper;~
Data~if (!given || given->type == impl_->type)~if (true)
Data~CopyOf(HostAccess::Of(*base))~std::move(HostAccess::Of(*const_cast<VELA_DataSource*>(base)))
Output~if (level >= BpLevelError) TheHost~if (level >= BpLevelFailure) TheHost
END
