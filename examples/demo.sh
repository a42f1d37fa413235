# The main road, with real files: sourced by ./rv demo.

# Everything happens below this folder, which goes again however the demonstration ends.
demo_folder=

demo_fail() {
    echo "demo: $*" >&2
    return 1
}

demo_clean() {
    [ -z "$demo_folder" ] || rm -rf "$demo_folder"
}

# demo_step <name> <bytes> <command...>: runs it and adds a row to the table.
demo_step() {
    local name=$1 bytes=$2 start=$EPOCHREALTIME
    shift 2
    "$@" || demo_fail "\"$name\" failed" || return
    demo_rows+=("$(awk -v name="$name" -v bytes="$bytes" -v start="$start" -v now="$EPOCHREALTIME" \
        'BEGIN { time = now - start
                 printf "%-10s %15d %9.2f %9.0f", name, bytes, time, bytes / 1e6 / time }')")
}

# The files of this tree, of each name the first one.
demo_own_files() {
    find "$1" \( -path "$1/build" -o -path "$1/.git" \) -prune -o -type f -print0 | sort -z |
        awk -v RS='\0' -v ORS='\0' '{ name = $0; sub(".*/", "", name) } !seen[name]++'
}

demo_every_byte_value() {
    local value
    for value in $(seq 0 255); do
        # shellcheck disable=SC2059
        printf "\\x$(printf %02x "$value")"
    done
}

demo_make_files() {
    local tree=$1 program=$2
    mkdir -p files tmp
    demo_own_files "$tree" | xargs -0 cp -t files &&
        : >files/demo-empty.bin &&
        demo_every_byte_value >files/demo-every-byte-value.bin &&
        head -c $((256 * 1024 * 1024)) /dev/urandom >files/demo-large.bin &&
        "$program" pack files/demo-nested.xml files/demo-every-byte-value.bin files/demo-empty.bin "$tree/rv"
}

# The listing is long: its beginning, and what stands around the nested document.
demo_show_listing() {
    head -n 4 listing
    echo '                 ...'
    grep -B 2 -A 4 'demo-nested\.xml' listing
    echo '                 ...'
}

# Compares every byte of what was unpacked, the contents of the nested document among it.
demo_compare() {
    local file count=0
    for file in files/*; do
        cmp "$file" "unpacked/${file#files/}" || return
        count=$((count + 1))
    done
    for file in demo-every-byte-value.bin demo-empty.bin rv; do
        cmp "files/$file" "unpacked/demo-nested.xml.contents/$file" || return
        count=$((count + 1))
    done
    [ "$(find unpacked -type f | wc -l)" -eq $count ] || demo_fail "unpacked are not $count files"
}

# demo <root of the tree> <the program> <a folder that this may make and remove>
demo() (
    tree=$1 program=$2 demo_folder=$3 demo_rows=()
    demo_clean
    trap demo_clean EXIT
    mkdir -p "$demo_folder" && cd "$demo_folder" || exit
    export TMPDIR=$demo_folder/tmp
    shopt -s dotglob

    say "making the files: this tree's own, an empty one, one of every byte value, one of 256 MB, and a document of some of them"
    demo_make_files "$tree" "$program" || demo_fail "the files could not be made" || exit
    bytes=$(find files -type f -printf '%s\n' | awk '{ sum += $1 } END { printf "%d", sum }')

    say "packing, listing and unpacking"
    demo_step pack "$bytes" "$program" pack document.xml files/* || exit
    before=$(cksum <document.xml)
    document_bytes=$(stat -c %s document.xml)
    demo_step list "$document_bytes" "$program" list document.xml >listing || exit
    demo_show_listing
    demo_step unpack "$bytes" "$program" unpack document.xml unpacked || exit
    demo_step compare "$bytes" demo_compare || exit
    [ "$before" = "$(cksum <document.xml)" ] || demo_fail "the document was changed" || exit
    [ -z "$(ls tmp)" ] || demo_fail "temporary files are left behind" || exit

    say "every byte came back: $(find files -type f | wc -l) files, $bytes bytes, in a document of $document_bytes bytes"
    printf '%-10s %15s %9s %9s\n' step bytes seconds MB/s
    printf '%s\n' "${demo_rows[@]}"
)
