# How all of the project's own targets are compiled and linked. Headers of other packages stand in
# system folders, so the warnings are about the project's code alone.

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 reports overlapping copies inside std::string's operator+ that cannot happen.
  add_compile_options(-Wno-restrict)
endif()

# No path of the machine that builds is written into a binary: file names start at the project.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=
                    -ffile-prefix-map=${CMAKE_BINARY_DIR}/=)

add_compile_definitions(_GLIBCXX_ASSERTIONS)
add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,-z,relro,-z,now -Wl,-z,noexecstack -Wl,--as-needed)

if(VELA_SANITIZE)
  set(sanitizers -fsanitize=address,undefined,leak -fno-sanitize-recover=all)
  add_compile_options(${sanitizers} -fno-omit-frame-pointer)
  # The sanitizers' runtime stands between the program and dlopen, so the folder to search must be
  # one that counts for callers other than the program too: DT_RPATH in place of DT_RUNPATH.
  add_link_options(${sanitizers} -Wl,--disable-new-dtags)
  if(VELA_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)  # so that the fuzzers see what their inputs reach
  endif()
else()
  # Nothing replaces a function of a library from outside, so calls within one are bound when it is
  # built. Other calls go where -z now has put them, without a stub in between.
  add_compile_options(-fno-semantic-interposition -fno-plt)
  add_compile_options(-fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
    add_compile_options(-fcf-protection)
  endif()
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  add_link_options(-Wl,--enable-new-dtags)
endif()
