# How every target of this project is compiled: the warnings it must be free of and the sanitizers it runs under.
# A target takes them by linking NELKCompileOptions privately.

add_library(NELKCompileOptions INTERFACE)

target_compile_options(NELKCompileOptions INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    # Macros of Qt's test framework have a variadic part that is mostly left empty.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    $<$<BOOL:${NELK_WARNINGS_AS_ERRORS}>:-Werror>
    # Shapes are the same on every processor: no product and sum is fused behind the back of the code.
    -ffp-contract=off)

# Connections use the string form, whose macros need no keyword; hosts may define `signals` for themselves.
target_compile_definitions(NELKCompileOptions INTERFACE
    QT_NO_KEYWORDS
    QT_DEPRECATED_WARNINGS)

if(NELK_SANITIZERS)
    target_compile_options(NELKCompileOptions INTERFACE
        -fsanitize=${NELK_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(NELKCompileOptions INTERFACE -fsanitize=${NELK_SANITIZERS})
    # Who looks for errors wants to see broken preconditions too.
    target_compile_definitions(NELKCompileOptions INTERFACE QT_FORCE_ASSERTS)
endif()
