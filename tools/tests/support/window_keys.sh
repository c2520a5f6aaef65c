# SPDX-License-Identifier: MIT
# For scripts under with_xvfb: runs the tool and presses keys over its window.

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
        if [ "$tries" -gt 200 ]; then
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
    # What was flipped a moment ago is on its way through the X server yet.
    sleep 0.2
    cp "$KOVA_XVFB_SCREEN" "$1"
}

End()
{
    wait "$tool"
    result=$?
    cat "$shown"
    return "$result"
}
