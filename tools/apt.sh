# Shell functions around the package manager, read by setup.sh.

say() { echo "setup: $*" >&2; }

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo > /dev/null; then
    sudo "$@"
  else
    say "this needs root rights: $*"
    return 1
  fi
}

apt_get() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 "$@"; }

# Once per run. A suite that cannot be read is told by apt itself and does not end the set-up.
apt_updated=
apt_update() {
  [ -n "$apt_updated" ] && return 0
  apt_get update || say "not every package index could be read; going on with the others"
  apt_updated=yes
}

# Those of the arguments that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2> /dev/null | grep -qx installed ||
      echo "$package"
  done
}

# Writes a private list of package sources into FOLDER: the machine's own, cut down to the main
# and updates suites of its release, as packages (deb) or source packages (deb-src).
write_private_sources() {
  local folder=$1 type=$2 codename file
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  rm -rf "$folder"
  mkdir -p "$folder/parts" "$folder/lists/partial"
  for file in /etc/apt/sources.list.d/*.sources; do
    [ -f "$file" ] || continue
    grep -v '^#' "$file" | awk -v type="$type" -v suite="$codename" '
      BEGIN { RS = ""; FS = "\n"; ORS = "\n\n" }
      {
        kept = ""; text = ""; usable = 1
        for (i = 1; i <= NF; i++) {
          line = $i
          if (line ~ /^Enabled: *no/) usable = 0
          if (line ~ /^Types:/) { if (line !~ /(^|[ :])deb( |$)/) usable = 0; line = "Types: " type }
          if (line ~ /^Suites:/) {
            n = split(substr(line, 8), words, " ")
            for (j = 1; j <= n; j++)
              if (words[j] == suite || words[j] == suite "-updates") kept = kept " " words[j]
            line = "Suites:" kept
          }
          text = text (i > 1 ? "\n" : "") line
        }
        if (usable && kept != "") print text
      }' > "$folder/parts/$(basename "$file")"
  done
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$file" ] || continue
    sed -nE "s/^deb[[:space:]]+((\[[^]]*\][[:space:]]+)?[^[:space:]]+[[:space:]]+$codename(-updates)?[[:space:]])/$type \1/p" \
      "$file" > "$folder/parts/$(basename "$file" .list)-lines.list"
  done
}

private_options() {
  echo "-o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts=$1/parts -o Dir::State::lists=$1/lists"
}
# Runs apt-get over the private list in FOLDER.
private_apt_get() {
  local folder=$1
  shift
  apt_get $(private_options "$folder") "$@"
}
# The same without root rights, for what only downloads.
private_apt_get_as_user() {
  local folder=$1
  shift
  apt-get $(private_options "$folder") "$@"
}
