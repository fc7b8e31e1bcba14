# How every target of the house is built: warnings, sanitizers, precompiled headers, ccache, a fast linker.

get_filename_component(KELVO_ROOT ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)

option(KELVO_TESTS "Build the tests" ON)
option(KELVO_BENCH "Build the measuring programs" ON)
option(KELVO_FUZZ "Build the fuzz targets (needs clang)" OFF)
set(KELVO_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them; empty for none")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # A precompiled header is only cacheable when ccache is told to overlook its time stamps and macros.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
endif()

find_program(MOLD_PROGRAM mold)
add_library(kelvo_options INTERFACE)
target_compile_options(kelvo_options INTERFACE -Wall -Wextra -Wconversion -Werror -fno-omit-frame-pointer)
# The libraries of the sound define it, which the precompiled headers must then know too.
target_compile_definitions(kelvo_options INTERFACE _REENTRANT)
target_include_directories(kelvo_options INTERFACE ${KELVO_ROOT}/src)
target_compile_definitions(kelvo_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_FOREACH KELVO_VERSION="${PROJECT_VERSION}"
  $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(kelvo_options INTERFACE -fpch-preprocess -Winvalid-pch)
endif()
if(MOLD_PROGRAM)
  target_link_options(kelvo_options INTERFACE -fuse-ld=mold)
endif()
if(KELVO_SANITIZE)
  target_compile_options(kelvo_options INTERFACE -fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all)
  target_link_options(kelvo_options INTERFACE -fsanitize=${KELVO_SANITIZE})
endif()

# kelvo_finish(TARGET HEADERS): HEADERS are the precompiled headers of the target: a file of this folder, or the target
# whose they are. Making them costs more than most rooms, so three sets serve all: those of kelvo_platform for logic,
# of kelvo_ui for windows and of kelvo_testing for tests. GCC takes them where every macro of their own target is
# defined too: whoever uses them links that target's libraries.
function(kelvo_finish target headers_of)
  target_link_libraries(${target} PRIVATE kelvo_options)
  # Moc looks at the headers that it knew when it last ran: one that is new to a configured build makes it run again.
  get_target_property(headers ${target} SOURCES)
  list(FILTER headers INCLUDE REGEX "\\.h$")
  set(known ${CMAKE_CURRENT_BINARY_DIR}/${target}.headers)
  set(before "")
  if(EXISTS ${known})
    file(READ ${known} before)
  endif()
  if(NOT before STREQUAL "${headers}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
    file(WRITE ${known} "${headers}")
  endif()
  if(TARGET ${headers_of})
    target_precompile_headers(${target} REUSE_FROM ${headers_of})
  else()
    target_precompile_headers(${target} PRIVATE ${KELVO_ROOT}/cmake/${headers_of})
  endif()
endfunction()

# kelvo_room(NAME LINKS ...): the logic of a subsystem, every source at the top of its folder. Qt Core only.
# HEADERS are its precompiled headers, those of kelvo_platform when none are named.
function(kelvo_room name)
  cmake_parse_arguments(ROOM "" "HEADERS" "LINKS;FOLDERS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  foreach(folder ${ROOM_FOLDERS})
    file(GLOB more CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
    list(APPEND sources ${more})
  endforeach()
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC Qt6::Core ${ROOM_LINKS})
  if(NOT ROOM_HEADERS)
    set(ROOM_HEADERS kelvo_platform)
  endif()
  kelvo_finish(${name} ${ROOM_HEADERS})
endfunction()

# kelvo_windows(NAME LINKS ...): the windows of a subsystem, in its folder windows/.
function(kelvo_windows name)
  cmake_parse_arguments(ROOM "" "HEADERS" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC Qt6::Widgets Qt6::Svg ${ROOM_LINKS})
  if(NOT ROOM_HEADERS)
    set(ROOM_HEADERS kelvo_ui)
  endif()
  kelvo_finish(${name} ${ROOM_HEADERS})
endfunction()

# kelvo_test(NAME LINKS ... SHARDS n): one test program a room. CTest runs it as n processes of every nth test each,
# four when it is not told: to start a process of its own for each test takes longer than most tests do.
function(kelvo_test name)
  cmake_parse_arguments(ROOM "" "SHARDS" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${KELVO_ROOT}/tests)
  target_link_libraries(${name} PRIVATE kelvo_testing ${ROOM_LINKS})
  kelvo_finish(${name} kelvo_testing)
  if(NOT ROOM_SHARDS)
    set(ROOM_SHARDS 4)
  endif()
  math(EXPR last "${ROOM_SHARDS} - 1")
  foreach(shard RANGE ${last})
    add_test(NAME ${name}.${shard} COMMAND ${name} --gtest_color=no)
    set_tests_properties(${name}.${shard} PROPERTIES TIMEOUT 300
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;SDL_AUDIODRIVER=dummy;\
GTEST_TOTAL_SHARDS=${ROOM_SHARDS};GTEST_SHARD_INDEX=${shard}")
  endforeach()
endfunction()
