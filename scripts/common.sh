# What ./run and ./test share. Sourced, not run.

# What the program is built and started with, as packages of Debian 12.
packages=(
  g++ cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-serialport-dev qt6-svg-dev libqcustomplot-dev qt6-translations-l10n libgl-dev libxcb1-dev
  libnetcdf-dev libpq-dev
  libqt6sql6-sqlite
  python3 python3-markdown fp-utils
  fonts-dejavu-core
)
# What start_display needs.
display_packages=(xvfb openbox wmctrl)
# What the checks of ./test need besides, the benchmarks too, which it builds.
check_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-format clang-tidy netcdf-bin sqlite3
  libqt6sql6-psql postgresql-15 python3-psycopg2 python3-gsw
  dpkg-dev file lintian appstream desktop-file-utils mandoc
  xdotool gcovr valgrind
)
# What tests/proof/fuzz needs besides for its long form.
fuzz_packages=(clang-14 libclang-rt-14-dev)
# What tests/proof/desktops needs besides.
desktop_packages=(fluxbox weston qt6-wayland)

# install_missing PACKAGE...: installs those of the packages that this machine lacks.
install_missing() {
  command -v apt-get > /dev/null || return 0
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}\n' "$package" 2> /dev/null | grep -q '^install ok installed$' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" > /dev/null
}

# start_screen WIDTHxHEIGHT: a virtual screen with nothing on it. Sets DISPLAY; stop_display ends it.
display_pids=()
start_screen() {
  local file
  file=$(mktemp)
  Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3> "$file" 2> /dev/null &
  display_pids+=($!)
  local tries=0
  until [ -s "$file" ]; do
    tries=$((tries + 1))
    [ "$tries" -lt 200 ] || { echo "no virtual display came up" >&2; return 1; }
    sleep 0.05
  done
  DISPLAY=":$(cat "$file")"
  rm -f "$file"
  export DISPLAY
}

# start_display [WIDTHxHEIGHT [MANAGER]]: a virtual screen with a window manager, without which no window
# gets the focus. Sets DISPLAY; stop_display ends both.
start_display() {
  local manager=(openbox --sm-disable)
  [ $# -lt 2 ] || manager=("$2")
  start_screen "${1:-1366x768}"
  unset WAYLAND_DISPLAY
  export QT_QPA_PLATFORM=xcb
  "${manager[@]}" > /dev/null 2>&1 &
  display_pids+=($!)
  # A window that is there before its manager may be taken down and up again by it.
  local tries=0
  until wmctrl -m > /dev/null 2>&1; do
    tries=$((tries + 1))
    [ "$tries" -lt 200 ] || { echo "no window manager came up" >&2; return 1; }
    sleep 0.05
  done
}

stop_display() {
  [ ${#display_pids[@]} -eq 0 ] || kill "${display_pids[@]}" 2> /dev/null || true
  display_pids=()
}
