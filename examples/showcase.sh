# Pictures of the workbench, before and after a click on a header: sourced by ./rv showcase.

showcase_document=$(dirname "${BASH_SOURCE[0]}")/workbench/document.xml

# showcase_on_linux <program> <folder>
showcase_on_linux() {
    # The widths of columns are kept: not among those of the user.
    RVUTILS_REGISTRY=$2/linux.reg "$1" "$showcase_document" "$2/linux-before.png"
    RVUTILS_REGISTRY=$2/linux.reg "$1" "$showcase_document" "$2/linux-after.png" 3
    rm -f "$2/linux.reg"
}

# Where the window stands on the screen, and the header of its dates.
readonly showcase_window=660x360+40+40 showcase_header=(375 113)

# showcase_on_windows <program> <folder>: on a screen of its own.
showcase_on_windows() {
    local program
    wine "$1" "$showcase_document" </dev/null >/dev/null 2>&1 &
    program=$!
    timeout 60 xdotool search --sync --name 'Plant workbench' >/dev/null
    # Painted some time after it is there.
    sleep 2
    import -window root -crop $showcase_window +repage "$2/windows-before.png"
    xdotool mousemove "${showcase_header[@]}" click 1 mousemove 1000 1000
    sleep 2
    import -window root -crop $showcase_window +repage "$2/windows-after.png"
    kill "$program"
}
