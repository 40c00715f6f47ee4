# Sourced by the project's scripts: installs the Debian packages a script
# needs, only those missing, as root; else says which are missing.
ensure_packages() {
  local missing=() p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
  done
  ((${#missing[@]})) || return 0
  if [[ $(id -u) -ne 0 ]]; then
    echo "missing packages (run as root or install them): ${missing[*]}" >&2
    return 1
  fi
  echo "installing ${missing[*]}" >&2
  DEBIAN_FRONTEND=noninteractive apt-get update -q >/dev/null \
    && DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" >/dev/null \
    || { echo "could not install ${missing[*]}" >&2; return 1; }
}
