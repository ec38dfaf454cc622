#!/usr/bin/env bash
# Installs what building and testing need and the machine lacks. Does nothing on a machine that
# has it all.
#
#   tools/setup.sh host      what the console edition and its tests need
#   tools/setup.sh windows   that, and what the Windows program and its tests need
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/apt.sh

level=${1:-windows}
cache=$PWD/build/cache

host_packages=(
  ca-certificates ccache chntpw clang clang-format cmake g++ groff-base libclang-rt-14-dev
  libcurl4-openssl-dev libdeflate-dev libgtest-dev libhivex-dev libwin-hivex-perl nettle-dev
  ninja-build ntfs-3g p7zip-full pigz python3 python3-pyftpdlib unzip xorriso zip zlib1g-dev)
windows_packages=(
  dpkg-dev fonts-liberation fonts-wine fp-utils-3.2.2 g++-mingw-w64-i686-win32 googletest imagemagick
  librsvg2-bin libz-mingw-w64-dev m4 make nsis x11-utils xauth xdotool xvfb)
wine_packages=(
  wine wine32:i386 libxcomposite1:i386 libxcursor1:i386 libxfixes3:i386 libxi6:i386
  libxinerama1:i386 libxrandr2:i386 libxrender1:i386)
# What the servers need: libsodium of pure-ftpd and libwrap of vsftpd; the rest every system has.
ftp_server_packages=(libsodium23 libwrap0 pure-ftpd pure-ftpd-common vsftpd)
wine64_packages=(g++-mingw-w64-x86-64-win32 wine wine64)

install_packages() {
  local missing
  missing=$(missing_packages "$@")
  [ -z "$missing" ] && return 0
  say "installing:" $missing
  apt_update
  apt_get install -y --no-install-recommends $missing
}

# 32-bit Wine needs the i386 twins of libraries that are installed already, in equal versions.
# With all of the machine's suites that fails where the i386 index of one suite is broken, so the
# second try takes the main and updates suites alone, and the third may also take a library back
# to their version.
install_wine() {
  local missing
  missing=$(missing_packages "${wine_packages[@]}")
  [ -z "$missing" ] && return 0
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    say "adding the i386 architecture, for 32-bit Wine"
    as_root dpkg --add-architecture i386
  fi
  say "installing:" $missing
  apt_update
  if apt_get install -y --no-install-recommends $missing; then return 0; fi
  say "that did not work: trying the main and updates suites alone"
  write_private_sources "$cache/apt-main" deb
  private_apt_get "$cache/apt-main" update
  if private_apt_get "$cache/apt-main" install -y --no-install-recommends $missing; then
    return 0
  fi
  say "that did not work: trying again, with leave to take libraries back to those suites"
  printf 'Package: *\nPin: release *\nPin-Priority: 1001\n' > "$cache/apt-main/preferences"
  if private_apt_get "$cache/apt-main" -o Dir::Etc::preferences="$cache/apt-main/preferences" \
    install -y --no-install-recommends --allow-downgrades $missing; then
    return 0
  fi
  say "32-bit Wine cannot be had on this machine"
  return 1
}

# Builds libNAME for Windows (TRIPLE) from the distribution's source package PACKAGE. The function
# make_NAME gets the triple, the compiler's flags, and a folder for the headers and the library.
build_library() {
  local package=$1 name=$2 triple=$3 flags=$4 prefix=$cache/$3
  [ -f "$prefix/lib/lib$name.a" ] && return 0
  say "building $name for $triple from the distribution's source package"
  local work=$cache/$name-source
  rm -rf "$work"
  mkdir -p "$work/result" "$prefix/lib" "$prefix/include"
  write_private_sources "$cache/apt-source" deb-src
  private_apt_get "$cache/apt-source" update
  (
    cd "$work"
    private_apt_get_as_user "$cache/apt-source" source --only-source "$package"
    cd "$package"-*/
    "make_$name" "$triple" "$flags" "$work/result"
    cp -r "$work/result/include/." "$prefix/include/"
    # Takes its name last: a copy that was broken off is no library.
    cp "$work/result/lib/lib$name.a" "$prefix/lib/lib$name.a.new"
    mv "$prefix/lib/lib$name.a.new" "$prefix/lib/lib$name.a"
  )
  rm -rf "$work"
}

# The fast deflate library.
make_deflate() {
  make CC="$1-gcc-win32" AR="$1-ar" CFLAGS="-O2 $2" libdeflatestatic.lib
  mkdir -p "$3/include" "$3/lib"
  cp libdeflate.h "$3/include/"
  cp libdeflatestatic.lib "$3/lib/libdeflate.a"
}

# Ciphers and hashes; of the library only what needs no big numbers.
make_nettle() {
  CC="$1-gcc-win32" AR="$1-ar" CFLAGS="-O2 -DNDEBUG $2" ./configure --host="$1" --prefix="$3" \
    --libdir="$3/lib" --disable-public-key --disable-shared --disable-documentation --disable-openssl
  # The source package comes with what these would make anew.
  make AUTOCONF=: AUTOHEADER=: install-static install-headers
}

build_libraries() {
  build_library libdeflate deflate "$@"
  build_library nettle nettle "$@"
}

# FTP servers for the tests. As installed packages they would exclude each other and start as
# services of the machine, so they are unpacked in a folder of their own.
fetch_ftp_servers() {
  local place=$cache/ftp-servers work=$cache/ftp-servers-new file
  [ -x "$place/usr/sbin/vsftpd" ] && [ -x "$place/usr/sbin/pure-ftpd" ] && return 0
  say "fetching FTP servers for the tests, which are not installed"
  rm -rf "$work"
  mkdir -p "$work/unpacked"
  (
    cd "$work"
    apt-get download "${ftp_server_packages[@]}" ||
      { apt_update && apt-get download "${ftp_server_packages[@]}"; }
  )
  for file in "$work"/*.deb; do dpkg -x "$file" "$work/unpacked"; done
  # Takes its name last: a copy that was broken off is no server.
  rm -rf "$place"
  mv "$work/unpacked" "$place"
  rm -rf "$work"
}

mkdir -p "$cache"
case $level in
  host)
    install_packages "${host_packages[@]}"
    fetch_ftp_servers
    ;;
  windows)
    install_packages "${host_packages[@]}" "${windows_packages[@]}"
    fetch_ftp_servers
    build_libraries i686-w64-mingw32 -march=i686
    if install_wine; then
      rm -f "$cache/windows-target"
    else
      say "*** the Windows tests will run as x86-64 programs under 64-bit Wine ***"
      install_packages "${wine64_packages[@]}"
      build_libraries x86_64-w64-mingw32 ""
      echo x86_64 > "$cache/windows-target"
    fi
    ;;
  *)
    echo "usage: tools/setup.sh host|windows" >&2
    exit 2
    ;;
esac
