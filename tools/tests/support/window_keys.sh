# SPDX-License-Identifier: MIT
# For scripts run by with_xvfb: runs the tool and presses keys over its window.

shown=$(mktemp)
trap 'rm -f "$shown"' EXIT

Start()
{
    "$TOOL" "$@" >"$shown" </dev/null &
    tool=$!
}

WaitFor()
{
    tries=0
    until grep -qF -e "$1" "$shown"; do
        tries=$((tries + 1))
        if [ "$tries" -gt 1200 ]; then
            echo "not printed: $1" >&2
            exit 1
        fi
        sleep 0.05
    done
}

Press()
{
    # Without a window manager keys go to the window under the pointer.
    xdotool mousemove 40 40 key "$1"
}

KeepScreen()
{
    # A flip may still be on its way through the X server: wait until the screen has not changed for a second.
    cp "$KOVA_XVFB_SCREEN" "$1"
    same=0
    while [ "$same" -lt 5 ]; do
        sleep 0.2
        if cmp -s "$KOVA_XVFB_SCREEN" "$1"; then
            same=$((same + 1))
        else
            cp "$KOVA_XVFB_SCREEN" "$1"
            same=0
        fi
    done
}

End()
{
    wait "$tool"
    result=$?
    cat "$shown"
    return "$result"
}
