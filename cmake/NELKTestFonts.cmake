# Data homes for tests: the library looks for its font in the fonts folder of the data home, under certain names. Each
# home here holds one packaged font under one of these names; a test gets one by way of its environment.

function(nelk_add_data_home variable name font_file link_name)
    find_file(${variable}_FONT "${font_file}" PATHS /usr/share/fonts/truetype PATH_SUFFIXES wqy droid)
    if(NOT ${variable}_FONT)
        message(FATAL_ERROR "The tests need the font ${font_file}; scripts/packages names its package.")
    endif()
    set(home "${PROJECT_BINARY_DIR}/data-homes/${name}")
    file(MAKE_DIRECTORY "${home}/fonts")
    file(CREATE_LINK "${${variable}_FONT}" "${home}/fonts/${link_name}" SYMBOLIC)
    set(${variable} "${home}" PARENT_SCOPE)
endfunction()

# A collection, which most tests use, a plain font file, and no font at all.
nelk_add_data_home(NELK_COLLECTION_HOME collection wqy-microhei.ttc msyh.ttc)
nelk_add_data_home(NELK_PLAIN_FONT_HOME plain DroidSansFallbackFull.ttf msyh.ttf)
set(NELK_FONTLESS_HOME "${PROJECT_BINARY_DIR}/data-homes/fontless")
file(MAKE_DIRECTORY "${NELK_FONTLESS_HOME}")

# nelk_set_data_home(TEST HOME): gives a test its data home and a folder of its own to work in.
function(nelk_set_data_home test home)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${test}.folder")
    file(MAKE_DIRECTORY "${folder}")
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT "XDG_DATA_HOME=${home}")
    set_tests_properties(${test} PROPERTIES WORKING_DIRECTORY "${folder}")
endfunction()
