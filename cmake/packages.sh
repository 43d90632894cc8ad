#!/usr/bin/env bash
# packages.sh [demo|test|proof|docs|abi|packaging|containers|target[=NAME[,NAME...]] [COMMAND]]: installs
# the Debian packages that are missing: those of ./demo, of ./test (the default), of ./test --proof, of the
# build's target `docs`, of comparing binary interfaces, of making and checking packages, of making and
# trying the image of the virtual router, or of ./test --target. Without a NAME they are those of all
# targets. This is the only list of packages. COMMAND is what a failure advises to type again.
set -euo pipefail
# shellcheck source=cmake/progress.sh
. "$(dirname "${BASH_SOURCE[0]}")/progress.sh"

# To build the library, the reference host and kioctl, to talk to it, and to give it a firmware server.
demo_packages=(
  cmake
  curl
  g++
  libcli11-dev
  libcurl4-openssl-dev
  libmicrohttpd-dev
  libpugixml-dev
  libsodium-dev
  libsqlite3-dev
  nettle-dev
  ninja-build
  nlohmann-json3-dev
  pkg-config
  procps
  u-boot-tools
  wget
)
# The tests, the benchmarks with what they compare the library with, charts, manual pages, format and
# lint.
test_packages=(
  binutils
  busybox
  clang-format
  clang-tidy
  gnuplot-nox
  jq
  libbenchmark-dev
  libexpat1-dev
  libgmock-dev
  libgtest-dev
  librapidxml-dev
  libssl-dev
  libxml2-utils
  python3-jsonschema
  scdoc
  shellcheck
  valgrind
  zlib1g-dev
  zsh
)
# The manual pages and the reference of the headers.
docs_packages=(
  doxygen
  scdoc
)
# To compare binary interfaces.
abi_packages=(
  abigail-tools
)
# To make packages and to try them.
packaging_packages=(
  debhelper
  debootstrap
  dpkg-dev
  fakeroot
  lintian
)
# To make the image of the virtual router and to run it.
containers_packages=(
  catatonit
  debootstrap
  jq
  podman
  python3-yaml
  runc
)
# What ./test --proof tries with: another compiler with its coverage and its fuzzing engine.
proof_packages=(
  clang-19
  cppcheck
  libclang-rt-19-dev
  llvm-19
)
# add_target NAME: adds what a target needs: the cross compiler with the headers that belong to it,
# the emulator, and what the C library or the unit tests are built from. musl is fetched by its
# sysroot.sh.
add_target() {
  local debian triple=${1%-*}-linux-gnu
  case $1 in
    mips-uclibc | mips-glibc) debian=mips ;;
    mipsel-uclibc | mipsel-glibc | mipsel-musl) debian=mipsel ;;
    aarch64-musl | aarch64-glibc) debian=arm64 ;;
    armhf-glibc) debian=armhf triple=arm-linux-gnueabihf ;;
    riscv64-glibc) debian=riscv64 ;;
    i686-glibc) debian=i386 ;;
    x86_64-musl)
      wanted+=(qemu-user)
      return
      ;;
    *)
      echo "${0##*/}: there is no target $1" >&2
      exit 2
      ;;
  esac
  wanted+=("g++-$triple" "libc6-dev-$debian-cross" "linux-libc-dev-$debian-cross" qemu-user)
  case $1 in
    *-uclibc) wanted+=(gcc make uclibc-source xz-utils) ;;
    *-glibc) wanted+=(googletest) ;;
  esac
}

wanted=("${demo_packages[@]}")
case ${1:-test} in
  demo) ;;
  test) wanted+=("${test_packages[@]}") ;;
  docs) wanted+=("${docs_packages[@]}") ;;
  proof) wanted+=("${test_packages[@]}" "${proof_packages[@]}") ;;
  abi) wanted+=("${abi_packages[@]}") ;;
  containers) wanted+=("${containers_packages[@]}") ;;
  packaging) wanted+=("${docs_packages[@]}" "${abi_packages[@]}" "${packaging_packages[@]}") ;;
  target | target=*)
    wanted+=("${test_packages[@]}")
    names=("$(dirname "${BASH_SOURCE[0]}")"/toolchains/*-*.cmake)
    names=("${names[@]##*/}")
    names=("${names[@]%.cmake}")
    if [[ $1 == target=* ]]; then
      IFS=, read -ra names <<< "${1#target=}"
    fi
    for name in "${names[@]}"; do
      add_target "$name"
    done
    ;;
  *)
    echo "usage: ${0##*/} [demo|test|proof|docs|abi|packaging|containers|target[=NAME[,NAME...]] [COMMAND]]" >&2
    exit 2
    ;;
esac

again=${2:-$0 ${1:-test}}

if ! command -v dpkg-query > /dev/null || ! command -v apt-get > /dev/null; then
  echo "This system has no apt-get. Install by other means what these Debian packages hold:" >&2
  echo "  ${wanted[*]}" >&2
  echo "The script goes on when dpkg-query knows them; the README tells how to build by hand." >&2
  exit 1
fi

missing=()
for package in "${wanted[@]}"; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null || true)
  # Targets have packages in common.
  if [[ $state != installed && " ${missing[*]} " != *" $package "* ]]; then
    missing+=("$package")
  fi
done
if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

by_hand="apt-get update && apt-get install --no-install-recommends ${missing[*]}"
as_root=(env DEBIAN_FRONTEND=noninteractive)
if [[ $(id -u) -ne 0 ]]; then
  if ! command -v sudo > /dev/null; then
    echo "Packages are missing, and neither are you root nor is there sudo." >&2
    advise "As root, type the following, and then $again:" "$by_hand"
    exit 1
  fi
  as_root=(sudo "${as_root[@]}")
fi
apt_get=(apt-get -qq -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0)

# show_apt: shows the progress from the status lines of apt-get and drops the rest.
show_apt() {
  local kind item percent what stage=
  while IFS=: read -r kind item percent what; do
    percent=${percent%%.*}
    case $kind in
      dlstatus) what=${what% (*} ;;
      pmstatus) what="$item" ;;
      *) continue ;;
    esac
    if [[ $kind != "$stage" ]]; then
      end_progress
      stage=$kind
    fi
    report_progress "$percent" 100 "$what"
  done
  end_progress
}

echo "Installing ${#missing[@]} packages and what they need: ${missing[*]}"
# apt-get keeps the descriptor of its status lines from the scripts of packages: were it their output,
# those that say something would fail. sudo hands on none but the first three.
# shellcheck disable=SC2016  # that shell expands what stands in single quotes
if ! { "${as_root[@]}" "${apt_get[@]}" update &&
  "${as_root[@]}" sh -c 'exec "$@" 3>&1 > /dev/null' sh "${apt_get[@]}" -o APT::Status-Fd=3 \
    install -y --no-install-recommends "${missing[@]}" |
  show_apt; }; then
  echo >&2
  echo "The packages could not be installed; apt-get says why above. Most often there is no way to" >&2
  echo "the network, or /etc/apt/sources.list names no server that has them." >&2
  advise "As root, type the following; when it works, $again does too:" "$by_hand"
  exit 1
fi
