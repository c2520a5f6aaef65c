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
    # A flip takes its time through the X server. The test compares what is kept, so give up silently.
    tries=0
    until cp "$KOVA_XVFB_SCREEN" "$1" && "$SCREEN_SHOWS" "$1" "$2" || [ "$tries" -gt 600 ]; do
        tries=$((tries + 1))
        sleep 0.1
    done
}

End()
{
    wait "$tool"
    result=$?
    cat "$shown"
    return "$result"
}
