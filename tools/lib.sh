# What the tools and CI share. Source it in bash, at the top of the checkout.
# shellcheck shell=bash disable=SC2034

# The library, the program, and the box with its sample site.
demo_packages=(
  g++ cmake ninja-build pkg-config libexpat1-dev libpugixml-dev libjsoncpp-dev
  libiniparser-dev libsqlite3-dev libutf8proc-dev zlib1g-dev libcli11-dev libcpp-httplib-dev libssl-dev
  libcurl4-openssl-dev libpq-dev libtag1-dev
  bubblewrap ca-certificates curl openssl
)
# Everything that the preset release builds, and what its tests run.
build_packages=(
  "${demo_packages[@]}" libgtest-dev libgmock-dev libbenchmark-dev
  dwarves fish groff-base iso-codes libxml2-utils mandoc postgresql python3 zsh
)
# What tests of pages run in, and are skipped without.
browser_packages=(chromium)
# What bench/compare compares with.
bench_packages=(libxml2-dev python3-guessit)
command -v npm >/dev/null || bench_packages+=(nodejs npm)
document_packages=(doxygen mandoc)
arm_packages=(g++-arm-linux-gnueabihf qemu-user)
coverage_packages=(gcovr)
clang_packages=(clang libclang-rt-14-dev clang-format clang-tidy mypy)
bare_packages=(git mmdebstrap)
debian_packages=(build-essential debhelper dh-python git lintian xz-utils)

say() {
  echo "$(basename "$0"): $*"
}

# Installs the packages that are missing. Needs neither root nor the network if none is.
install_packages() {
  local package missing=() as_root=()
  for package; do
    case $(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null) in
      ?i*) ;;
      *) missing+=("$package") ;;
    esac
  done
  if [ ${#missing[@]} -eq 0 ]; then
    say "nothing to install"
    return
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      say "these packages are missing; install them as root: ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -qq)
  "${as_root[@]}" update &&
    "${as_root[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}

build_preset() {
  say "building preset $1 in build/$1"
  cmake --preset "$1" >/dev/null && cmake --build --preset "$1"
}

# Copies the files of the last commit into a folder.
export_commit() {
  mkdir -p "$1"
  git archive HEAD | tar -x --no-same-permissions -C "$1"
}

# Copies the last commit into a folder and builds its Debian packages beside that folder.
build_debs() {
  export_commit "$1" && (cd "$1" && dpkg-buildpackage -us -uc -b)
}
