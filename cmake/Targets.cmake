# Compile settings and the helpers that declare a folder's target.

add_library(sysadmin_options INTERFACE)
target_compile_options(sysadmin_options INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow=local -Wnon-virtual-dtor
                                                  -Winvalid-pch -fpch-preprocess)
target_compile_definitions(
  sysadmin_options INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH
                             SYSADMIN_VERSION="${PROJECT_VERSION}" SYSADMIN_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_include_directories(sysadmin_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
if(SYSADMIN_SANITIZE)
  target_compile_options(sysadmin_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=undefined)
  target_link_options(sysadmin_options INTERFACE -fsanitize=address,undefined)
endif()

# Several files as one: each precompiled header is read once for all of them, as are the headers of the project. What a
# file keeps to itself has a name that no other file of its target gives to something else.
if(NOT WIN32) # macros of its headers would reach into other files
  set(CMAKE_UNITY_BUILD ${SYSADMIN_UNITY})
endif()
set(CMAKE_UNITY_BUILD_BATCH_SIZE 20)

# One precompiled header for code without widgets, one for code with them: all their users share the flags.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/pch.cpp CONTENT "")
add_library(sysadmin_pch_plain OBJECT ${CMAKE_BINARY_DIR}/pch.cpp)
target_link_libraries(sysadmin_pch_plain PUBLIC sysadmin_options Qt6::Core Qt6::Network)
target_precompile_headers(sysadmin_pch_plain PRIVATE <QtCore> <functional> <memory> <optional> <vector>)
add_library(sysadmin_pch_widgets OBJECT ${CMAKE_BINARY_DIR}/pch.cpp)
target_link_libraries(sysadmin_pch_widgets PUBLIC sysadmin_options Qt6::Widgets Qt6::Network $<TARGET_NAME_IF_EXISTS:Qt6::Svg>)
target_precompile_headers(sysadmin_pch_widgets PRIVATE <QtCore> <QtWidgets> <functional> <memory> <optional> <vector>)
set_target_properties(sysadmin_pch_plain sysadmin_pch_widgets PROPERTIES AUTOMOC OFF)

# What moc makes of a header is included by the source of the same name, which has parsed that header anyway; what the
# target then still compiles for moc is empty and needs no precompiled header.
function(sysadmin_moc_apart target)
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp
                              PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# sysadmin_library(NAME [WIDGETS] [LINK target...]): the library of src/NAME, a '/' in NAME a '_' in its target's.
# LINK names the folders below it; that is what keeps includes pointing downwards.
function(sysadmin_library folder)
  cmake_parse_arguments(arg "WIDGETS" "" "LINK" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h)
  add_library(sysadmin_${name} STATIC ${sources})
  sysadmin_moc_apart(sysadmin_${name})
  if(arg_WIDGETS)
    set(pch sysadmin_pch_widgets)
  else()
    set(pch sysadmin_pch_plain)
  endif()
  target_precompile_headers(sysadmin_${name} REUSE_FROM ${pch})
  get_target_property(libs ${pch} LINK_LIBRARIES)
  target_link_libraries(sysadmin_${name} PUBLIC ${libs} ${arg_LINK})
endfunction()

# sysadmin_embed(TARGET PREFIX DIR GLOB): compiles the files of DIR into TARGET as the resources :/PREFIX/FILE. Code of
# the target registers them with Q_INIT_RESOURCE(TARGET_PREFIX).
function(sysadmin_embed target prefix dir pattern)
  file(GLOB files CONFIGURE_DEPENDS ${dir}/${pattern})
  set(entries "")
  foreach(path ${files})
    get_filename_component(name ${path} NAME)
    string(APPEND entries "  <file alias=\"${name}\">${path}</file>\n")
  endforeach()
  set(qrc ${CMAKE_CURRENT_BINARY_DIR}/${target}_${prefix}.qrc)
  file(CONFIGURE OUTPUT ${qrc} CONTENT "<RCC><qresource prefix=\"/${prefix}\">\n${entries}</qresource></RCC>\n" @ONLY)
  qt_add_resources(compiled ${qrc} OPTIONS ${SYSADMIN_RCC_OPTIONS})
  set_source_files_properties(${compiled} PROPERTIES SKIP_PRECOMPILE_HEADERS ON SKIP_UNITY_BUILD_INCLUSION ON)
  target_sources(${target} PRIVATE ${compiled})
endfunction()

# sysadmin_test(NAME [TOGETHER pattern] [DISPLAY] LINK target...): the test program of tests/NAME, each of its cases a
# ctest case. Cases that match the pattern run as one, or dealt out to PARTS of them, which may run side by side: they
# share something that is slow to start. With DISPLAY all run as one on a real X display.
function(sysadmin_test name)
  cmake_parse_arguments(arg "DISPLAY" "TOGETHER;PARTS" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  sysadmin_moc_apart(test_${name})
  target_precompile_headers(test_${name} REUSE_FROM sysadmin_test_support)
  target_link_libraries(test_${name} PRIVATE sysadmin_test_support ${arg_LINK})
  set(everywhere "LC_ALL=C.UTF-8;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leaks.supp")
  set(environment "QT_QPA_PLATFORM=offscreen;${everywhere}")
  if(arg_DISPLAY)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tests/support/on-display $<TARGET_FILE:test_${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 ENVIRONMENT "${everywhere}")
    return()
  endif()
  if(arg_TOGETHER)
    set(apart TEST_FILTER "-${arg_TOGETHER}")
    if(NOT arg_PARTS)
      set(arg_PARTS 1)
    endif()
    foreach(part RANGE 1 ${arg_PARTS})
      math(EXPR index "${part} - 1")
      add_test(NAME ${name}.together.${part} COMMAND test_${name} --gtest_filter=${arg_TOGETHER})
      set_tests_properties(${name}.together.${part} PROPERTIES TIMEOUT 600 COST 1000
        ENVIRONMENT "${environment};GTEST_TOTAL_SHARDS=${arg_PARTS};GTEST_SHARD_INDEX=${index}")
    endforeach()
  endif()
  gtest_discover_tests(test_${name} ${apart} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 300 ENVIRONMENT "${environment}")
endfunction()
