#!/usr/bin/env bash
# find_package_test.sh CMAKE GENERATOR CC PREFIX VERSION SOURCE FLAGS [PART...]: builds SOURCE as a
# project of its own that finds the installed CMake package, which lacks the parts, and runs it.
set -euo pipefail
cmake=$1 generator=$2 cc=$3 prefix=$4 version=$5 source=$6 flags=$7
shift 7
left_out="${*,,}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp "$source" "$work"
cat > "$work/CMakeLists.txt" << 'END'
cmake_minimum_required(VERSION 3.16)
project(consumer LANGUAGES C)
math(EXPR next_major "${MAJOR} + 1")
find_package(kioapp ${next_major} QUIET CONFIG)
if(kioapp_FOUND)
  message(FATAL_ERROR "the package claims to be version ${next_major}")
endif()
foreach(part variables firmware auth dump)
  find_package(kioapp QUIET CONFIG COMPONENTS ${part})
  if((part IN_LIST LEFT_OUT AND kioapp_FOUND) OR NOT (part IN_LIST LEFT_OUT OR kioapp_FOUND))
    message(FATAL_ERROR "${part}: found '${kioapp_FOUND}', left out: ${LEFT_OUT}")
  endif()
endforeach()
find_package(kioapp ${EXPECTED_VERSION} REQUIRED CONFIG)
add_executable(minimal_host minimal_host.c)
target_link_libraries(minimal_host PRIVATE kioapp::kioapp)
END
"$cmake" -S "$work" -B "$work/build" -G "$generator" -DCMAKE_C_COMPILER="$cc" \
  -DCMAKE_C_FLAGS="$flags" \
  -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF -DCMAKE_PREFIX_PATH="$prefix" -DMAJOR="${version%%.*}" \
  -DEXPECTED_VERSION="$version" -DLEFT_OUT="${left_out// /;}" > "$work/log" || { cat "$work/log" && exit 1; }
"$cmake" --build "$work/build" > "$work/log" || { cat "$work/log" && exit 1; }
bash "$(dirname "$0")/run_example.sh" "$work/build/minimal_host"
