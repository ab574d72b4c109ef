# Sets up the environment of the tour and of similar scripts: a virtual screen, an accessibility bus
# and, where the system allows, a private network. Source it after lib.sh, with `out` set to the folder
# for pictures and logs.

server_address=192.0.2.10
other_address=198.51.100.10
phone_address=192.0.2.20

started=()
cleanup() {
    local pid
    for pid in "${started[@]}"; do
        kill -- "$pid" 2>/dev/null || true
    done
    [ -z "${work:-}" ] || rm -rf "$work"
}

# lay_program <folder>: copies the program there, with the shipped settings instead of those that a
# user left beside the built program.
lay_program() {
    mkdir -p "$1"
    cp "$root/build/release/bin/VlManager" "$1/"
    cmake -DSOURCE_DIR="$root" -DBIN_DIR="$1" -DCATALOGUE_DIR="$root/build/release/catalogues" \
        -P "$root/cmake/CopyRuntimeFiles.cmake"
}

# Prints the command that makes a private network with the fewest rights, or nothing if none can.
private_network_command() {
    local command
    for command in "unshare --net --ipc --mount" "unshare --map-root-user --net --ipc --mount"; do
        if $command sh -c 'mount -t tmpfs tmpfs /mnt && ip link add tour0 type veth peer name phone0' \
            >/dev/null 2>&1; then
            echo "$command"
            return
        fi
    done
}

# Makes two hosts on one cable: tour0 is here, phone0 in a network namespace that a sleeping process
# keeps. The choice of the card matters, because a second card is in a network without a phone.
lay_network() {
    # X servers of other networks share the socket folder but not the names, so use a separate folder.
    mkdir -p /tmp/.X11-unix
    mount -t tmpfs tmpfs /tmp/.X11-unix
    chmod 1777 /tmp/.X11-unix
    ip link set lo up
    ip link add tour0 type veth peer name phone0
    ip link add tour1 type veth peer name other1
    unshare --net sleep infinity &
    phone_host=$!
    started+=("$phone_host")
    until [ "$(readlink "/proc/$phone_host/ns/net")" != "$(readlink /proc/self/ns/net)" ]; do
        sleep 0.05
    done
    local end
    for end in phone0 other1; do
        ip link set "$end" netns "$phone_host"
        nsenter --target "$phone_host" --net ip link set "$end" up
    done
    ip addr add "$server_address/24" dev tour0
    ip addr add "$other_address/24" dev tour1
    ip link set tour0 up
    ip link set tour1 up
    nsenter --target "$phone_host" --net ip addr add "$phone_address/24" dev phone0
}

# start_screen <width>x<height>
start_screen() {
    local display
    exec {display_pipe}<> <(:)
    # -r: keys do not repeat, because a release may come late on a busy machine.
    Xvfb -displayfd "$display_pipe" -screen 0 "$1x24" -dpi 96 -nolisten tcp -r \
        >"$out/xvfb.log" 2>&1 &
    started+=("$!")
    read -r -t 20 display <&"$display_pipe" || die "the virtual screen did not start; see $out/xvfb.log"
    export DISPLAY=":$display"
    openbox --sm-disable >"$out/openbox.log" 2>&1 &
    started+=("$!")
    # A window that is shown before the window manager runs is not activated.
    for _ in $(seq 100); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && return
        sleep 0.1
    done
    die "the window manager did not start; see $out/openbox.log"
}

# set_stage private|shared <width>x<height>: sets up the network, the screen and clean variables.
set_stage() {
    trap cleanup EXIT
    trap 'exit 143' INT TERM HUP

    # Socket paths are limited to some 100 characters, so the sockets cannot be below $out.
    work="$(mktemp -d "${TMPDIR:-/tmp}/tour.XXXXXX")"
    mkdir -p "$work/run" "$work/home" "$work/tmp"
    chmod 700 "$work/run"
    unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_CONFIG_HOME XDG_DATA_HOME \
        QT_QPA_PLATFORM QT_STYLE_OVERRIDE QT_LOGGING_RULES QT_SCALE_FACTOR XAUTHORITY
    export HOME="$work/home" XDG_RUNTIME_DIR="$work/run" TMPDIR="$work/tmp" LC_ALL=C.UTF-8
    export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=1

    export TOUR_SERVER= TOUR_PHONE= TOUR_PHONE_ADDRESS=
    if [ "$1" = private ]; then
        lay_network
        TOUR_SERVER="$server_address"
        TOUR_PHONE="nsenter --target $phone_host --net"
        TOUR_PHONE_ADDRESS="$phone_address"
    fi
    start_screen "$2"
}

# play <script> [argument]...: runs a Python script and returns its status; shows the end of its log if
# the status is not 0.
play() {
    # It runs in the background, so that a signal is handled at once, and in its own process group, so
    # that the bus and the program end with it.
    setsid dbus-run-session -- /usr/bin/python3 -B "$@" 2>"$out/tour.log" &
    local session=$! status=0
    started+=("-$session")
    wait "$session" || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 40 "$out/tour.log" >&2
        say "screenshots and logs: $out"
    fi
    return "$status"
}

# enter_network <argument>...: restarts the calling script with these arguments after "--inside private"
# in a private network or, where the system does not allow that, after "--inside shared".
enter_network() {
    local private
    private="$(private_network_command)"
    if [ -n "$private" ]; then
        say "in a private network"
        exec $private "$0" --inside private "$@"
    fi
    say "on this machine's own network"
    exec "$0" --inside shared "$@"
}
