# Flags that every target of the project shares.
add_library(quibbits_flags INTERFACE)
target_compile_options(quibbits_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
# Designated initialisers leave members at their defaults on purpose.
target_compile_options(quibbits_flags INTERFACE -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlapping copies in std::string's operator+ where there are none.
  target_compile_options(quibbits_flags INTERFACE -Wno-restrict)
endif()
if(QUIBBITS_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What the sanitizers put in between confuses the flow analysis.
    target_compile_options(quibbits_flags INTERFACE -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow)
  endif()
  target_compile_options(quibbits_flags INTERFACE
    -fsanitize=${QUIBBITS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quibbits_flags INTERFACE -fsanitize=${QUIBBITS_SANITIZE})
endif()
if(QUIBBITS_FUZZ)
  target_compile_options(quibbits_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
