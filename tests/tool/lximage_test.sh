#!/usr/bin/env bash
# Runs the tool as its users do. Usage: lximage_test.sh PATH_OF_LXIMAGE
set -u

tool=$(realpath -- "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

# In a build that looks for leaks, those of Qt's offscreen platform are not ours.
echo 'leak:libqoffscreen.so' >leaks
export LSAN_OPTIONS=suppressions=$work/leaks:print_suppressions=0

# check WHAT COMMAND...: the command must succeed.
check() {
    local what=$1
    shift
    "$@" && return
    echo "FAILED: $what"
    [[ -s stderr ]] && sed 's/^/    stderr: /' stderr
    failures=$((failures + 1))
}

# Runs the tool, keeps what it prints in the files stdout and stderr, and wants this exit code.
exits() {
    local code=$1
    shift
    "$tool" "$@" >stdout 2>stderr
    [[ $? -eq $code ]]
}

printed() { grep -q -- "$1" stdout; }
complained() { grep -q -- "^lximage: .*$1" stderr; }
absent() { [[ ! -e $1 ]]; }
differ() { ! cmp -s "$1" "$2"; }

# The tool must fail on the input, say why, and neither make a new file nor touch an old one.
refuses() { # what is wrong, file
    check "$1: exit code 1" exits 1 convert "$2" new.png
    check "$1: message names the file" complained "$2: ."
    check "$1: no new file" absent new.png
    echo old >old.png
    exits 1 convert "$2" old.png
    check "$1: old file untouched" cmp -s old.png <(echo old)
}

# Signals the running job until it has gone, and wants exit code 1.
ends_on() { # signal, process
    for _ in {1..100}; do
        sleep 0.1
        kill -"$1" "$2" 2>/dev/null || break
    done
    kill -KILL "$2" 2>/dev/null
    wait "$2"
    [[ $? -eq 1 ]]
}

# --- usage ---------------------------------------------------------------------------------------

check "--help" exits 0 --help
for command in adjust blend blur convert draw fill filter histogram info inpaint profile scene select text white-balance; do
    check "--help lists $command" grep -q "^  $command  " stdout
done
for command in blend blur convert draw fill histogram info inpaint profile scene select text white-balance; do
    check "help $command" exits 0 help "$command"
    check "help $command prints the usage" printed "^Usage: lximage $command \[options\]"
    cp stdout help
    check "$command --help" exits 0 "$command" --help
    check "$command --help prints the same" cmp -s stdout help
done
check "--version" exits 0 --version
check "--version prints a number" printed '^lximage [0-9]*\.[0-9]'

wrong_usage() {
    check "wrong usage '$*': exit code 2" exits 2 "$@"
    check "wrong usage '$*': message" complained "see lximage --help"
}
wrong_usage
wrong_usage frobnicate
wrong_usage help frobnicate
wrong_usage info
wrong_usage info --frobnicate x.png
wrong_usage convert x.png
wrong_usage convert x.png y.png z.png
wrong_usage convert --through paint x.png y.png
wrong_usage convert --format paint x.png y.png
wrong_usage scene --size 12 x.png
wrong_usage scene --size 0x10 x.png
wrong_usage scene --size 10x99999 x.png

# --- pictures ------------------------------------------------------------------------------------

check "scene" exits 0 scene scene.png
check "scene again" exits 0 scene again.png
check "scene is the same on every run" cmp -s scene.png again.png
check "scene in another size" exits 0 scene --size 300x50 small.png
check "info" exits 0 info scene.png small.png
check "info shows the default size" printed "1200 x 800 pixels"
check "info shows the other size" printed "300 x 50 pixels"
check "info shows the tiles" printed "70 slots (10 x 7)"

for format in rgba64 half cmyk hsl; do
    check "convert --through $format" exits 0 convert --through "$format" scene.png "$format.png"
done
check "convert" exits 0 convert scene.png plain.png
check "the tiled image is lossless" cmp -s scene.png plain.png
check "rgba64 is lossless" cmp -s scene.png rgba64.png
check "half is not lossless" differ scene.png half.png

printf 'P6\n2 1\n255\n\377\0\0\0\0\377' >colours.ppm
printf 'P6\n2 1\n255\n\0\0\377\377\0\0' >exchanged.ppm
check "cmyk of two pixels" exits 0 convert --through cmyk colours.ppm cmyk.ppm
check "cmyk exchanges red and blue" cmp -s cmyk.ppm exchanged.ppm
printf 'P6\n2 1\n255\n\100\200\300\12\24\36' >even.ppm # levels that fall on whole lightnesses
check "hsl of two pixels" exits 0 convert --through hsl even.ppm hsl.ppm
check "hsl keeps their colours" cmp -s hsl.ppm even.ppm

check "formats without transparency get white" exits 0 convert small.png small.ppm
check "the corner is white" [ "$(tail -c 3 small.ppm | od -An -tx1)" = " ff ff ff" ]

# --- files and pipes -----------------------------------------------------------------------------

check "convert to standard output" exits 0 convert scene.png -
check "standard output is PNG" cmp -s stdout scene.png
"$tool" convert - - <scene.png 2>stderr | "$tool" convert - piped.png 2>>stderr
check "convert through pipes" cmp -s piped.png scene.png
check "--format for standard output" exits 0 scene --format bmp -
check "it is BMP" [ "$(head -c 2 stdout)" = BM ]
check "--format wins over the name" exits 0 convert --format bmp small.png named.png
check "it is BMP as well" [ "$(head -c 2 named.png)" = BM ]
check "a name without a format" exits 1 convert small.png noformat
check "its message" complained "noformat: .*--format"
check "info of standard input" "$tool" info - <small.png >stdout
check "it is named" printed "^standard input$"

mkdir 'a folder'
cp scene.png 'a folder/a &picture; é.png'
check "same file in and out" exits 0 convert 'a folder/a &picture; é.png' 'a folder/a &picture; é.png'
check "same file is whole" cmp -s scene.png 'a folder/a &picture; é.png'
check "no other file is left" [ "$(ls 'a folder')" = 'a &picture; é.png' ]

"$tool" convert scene.png - 2>stderr >/dev/full
check "standard output on a full disk: exit code 1" [ $? -eq 1 ]
check "standard output on a full disk: message" complained "standard output: ."
"$tool" convert scene.png - 2>stderr | head -c 1 >/dev/null
check "standard output closed early: exit code 1" [ "${PIPESTATUS[0]}" -eq 1 ]
"$tool" info scene.png 2>stderr >&-
check "no standard output: exit code 1" [ $? -eq 1 ]

# --- bad input and output ------------------------------------------------------------------------

: >empty.png
head -c 3000 /dev/zero | tr '\0' 'x' >rubbish.png
printf 'P6\n70000 70000\n255\nabc' >huge.ppm
refuses "empty file" empty.png
refuses "rubbish" rubbish.png
refuses "more pixels than memory" huge.ppm
refuses "missing file" missing.png
refuses "directory" 'a folder'
for format in png jpg bmp ppm tiff webp; do
    "$tool" convert scene.png "whole.$format"
    check "$format can be read back" exits 0 info "whole.$format"
    head -c $(($(stat -c %s "whole.$format") * 9 / 10)) "whole.$format" >"cut.$format"
    refuses "truncated $format" "cut.$format"
done
cp small.png secret.png
chmod 000 secret.png
if [[ -r secret.png ]]; then
    echo "note: this user reads every file; unreadable files not tried"
else
    refuses "unreadable file" secret.png
fi

check "missing folder: exit code 1" exits 1 convert small.png missing/out.png
check "missing folder: message" complained "missing/out.png: ."
check "folder as output: exit code 1" exits 1 convert --format png small.png 'a folder'
echo old >'a folder/old.png'
(
    trap '' XFSZ
    ulimit -f 8
    "$tool" convert scene.png 'a folder/old.png' 2>/dev/null
)
check "write error: exit code 1" [ $? -eq 1 ]
check "write error: old file untouched" cmp -s 'a folder/old.png' <(echo old)
check "write error: no other file is left" [ "$(find 'a folder' -type f | wc -l)" -eq 2 ]

if (ulimit -v 3000000; "$tool" --version) >/dev/null 2>&1; then
    (ulimit -v 3000000; "$tool" scene poor.png 2>stderr)
    check "no room for the tile pool: exit code 1" [ $? -eq 1 ]
    check "no room for the tile pool: message" complained "out of memory"
else
    echo "note: this build does not run in limited memory; that is not tried"
fi

# --- information ---------------------------------------------------------------------------------

check "one bad file among several: exit code 1" exits 1 info small.png rubbish.png scene.png
check "the bad one is reported" complained "rubbish.png: ."
check "the first good one is printed" printed "^small.png$"
check "the last good one is printed" printed "^scene.png$"
check "--json with a bad file: exit code 1" exits 1 info --json small.png rubbish.png scene.png
check "--json begins an array" [ "$(head -n 1 stdout)" = '[' ]
check "--json ends the array" [ "$(tail -n 1 stdout)" = ']' ]
check "--json has an object for each good file" [ "$(grep -c '"path"' stdout)" -eq 2 ]
check "--json numbers are numbers" grep -q '"width": 300' stdout
check "--json tells the format" grep -q '"format": "png"' stdout

# --- what travels with a picture -----------------------------------------------------------------

# A PNG that says it is sRGB: the chunk goes behind the header chunk, which ends at byte 33.
{
    head -c 33 small.png
    printf '\0\0\0\1sRGB\0\256\316\034\351'
    tail -c +34 small.png
} >profile.png
check "no profile" exits 0 info small.png
check "none is shown" printed "^  Profile   none$"
check "a profile" exits 0 info profile.png
check "it is shown" printed "^  Profile   sRGB$"
for format in png jpg tiff webp; do
    check "profile to $format" exits 0 convert --through rgba64 profile.png "profile.$format"
    check "profile in $format" exits 0 info "profile.$format"
    check "profile of $format" printed "^  Profile   sRGB$"
done

# A JPEG whose EXIF segment tells a maker, an f-number, a width, and that it lies on its side.
{
    "$tool" convert --format jpg profile.png - >upright.jpg
    head -c 2 upright.jpg
    printf '\377\341\0\150Exif\0\0II\52\0\10\0\0\0'
    printf '\3\0' # fields of the main directory
    printf '\17\1\2\0\10\0\0\0\62\0\0\0'
    printf '\22\1\3\0\1\0\0\0\6\0\0\0'
    printf '\151\207\4\0\1\0\0\0\72\0\0\0'
    printf '\0\0\0\0A\33maker\0'
    printf '\2\0' # fields of the EXIF directory
    printf '\235\202\5\0\1\0\0\0\130\0\0\0'
    printf '\2\240\4\0\1\0\0\0\54\1\0\0'
    printf '\0\0\0\0\34\0\0\0\12\0\0\0'
    tail -c +3 upright.jpg
} >exif.jpg
check "EXIF" exits 0 info exif.jpg
check "the picture is turned upright" printed "50 x 300 pixels"
check "fields have the names of the library" printed "  Image input equipment manufacturer  "
check "the maker is shown, on one line and without control characters" printed "  A maker$"
check "the orientation is shown as it is in the file" printed "right, top"
for format in jpg png tiff webp; do
    check "EXIF to $format" exits 0 convert exif.jpg "exif2.$format"
    check "EXIF in $format" exits 0 info --json "exif2.$format"
    check "maker in $format" grep -q '"value": "A.*maker"' stdout
    check "description in $format" grep -q '"description": "The F number."' stdout
    check "f-number in $format" grep -q '"value": "F2.8"' stdout
    check "size of $format" grep -q '"width": 50' stdout
    check "width in $format" grep -q '"value": "50"' stdout
    check "orientation in $format" grep -q '"value": "top, left"' stdout
    check "profile beside EXIF in $format" grep -q '"profile": "sRGB"' stdout
done
check "upright picture" exits 0 convert exif.jpg exif.ppm
check "upright picture from TIFF" exits 0 convert exif2.tiff exif2.ppm
check "EXIF does not touch the pixels of TIFF" cmp -s exif.ppm exif2.ppm

# --- blend ---------------------------------------------------------------------------------------

"$tool" scene --size 200x160 base.png
"$tool" scene --picture sweep --size 100x80 top.png
"$tool" convert top.png opaque.bmp
blended() { # file, arguments before the pictures
    local out=$1
    shift
    exits 0 blend "$@" base.png top.png "$out"
}
same_pixels() { # files, in whatever format
    "$tool" convert --format ppm "$1" - >one.ppm && "$tool" convert --format ppm "$2" - >two.ppm &&
        cmp -s one.ppm two.ppm
}
check "blend" blended over.png
check "blend by name and by number" blended by_name.png --mode multiply
check "blend by number" blended by_number.png --mode 13
check "both are the same" cmp -s by_name.png by_number.png
check "modes differ" differ by_name.png over.png
number=0
for name in source-over 0 clear 2 source 3 destination-in 6 destination-out 8 plus 12 multiply 13 \
    screen 14 overlay 15 darken 16 lighten 17 color-dodge 18 color-burn 19 hard-light 20 \
    soft-light 21 difference 22 exclusion 23 source-or-destination 24 source-and-destination 25 \
    not-source-and-destination 31 luminance-to-alpha 64 alpha-to-gray 88 luminance-to-gray 89 \
    heal 90 source-where-visible 91 destination-in-any-alpha 92 unite-alpha 93 intersect-alpha 94 \
    subtract-alpha 95; do
    blended "mode$((number % 2)).png" --mode "$name"
    number=$((number + 1))
    ((number % 2)) || check "the number of mode $name" cmp -s mode0.png mode1.png
done
check "an unknown number is SourceOver" blended unknown.png --mode 4
check "an unknown number is SourceOver: pixels" cmp -s unknown.png over.png
check "opacity 0" blended transparent.png --opacity 0
check "opacity 0 leaves the picture" same_pixels transparent.png base.png
check "beyond the picture" blended beyond.png --at 200,0
check "beyond the picture nothing changes" same_pixels beyond.png base.png
check "at a corner" blended corner.png --at 0,159
check "at a corner: one row" differ corner.png base.png
check "beyond the other side" blended beyond2.png --at 0,160
check "beyond the other side nothing changes" same_pixels beyond2.png base.png
check "half opacity" blended half.png --opacity 0.5
check "half opacity: between" differ half.png over.png
check "negative position" blended negative.png --at=-30,-20
check "negative position: pixels" differ negative.png over.png
check "lock" blended locked.png --lock-alpha
check "lock: pixels" differ locked.png over.png
check "opaque on top" exits 0 blend opaque.bmp opaque.bmp covered.bmp
check "opaque on top covers" cmp -s covered.bmp opaque.bmp
"$tool" scene --picture sweep --size 40x30 mask.png
check "mask" blended masked.png --mask mask.png
check "mask: pixels" differ masked.png over.png
check "mask and beyond" blended outside.png --mask mask.png --outside
check "mask and beyond: pixels" differ outside.png masked.png
for arguments in "--mode nonsense" "--opacity 2" "--opacity x" "--at 5" "--outside"; do
    # shellcheck disable=SC2086
    check "blend $arguments" exits 2 blend $arguments base.png top.png none.png
done
check "blend with a missing mask" exits 1 blend --mask missing.png base.png top.png none.png
check "blend with two files" exits 2 blend base.png top.png
check "no output of what failed" absent none.png

# --- adjust and histogram ------------------------------------------------------------------------

check "adjust --list" exits 0 adjust --list
names=$(grep -o '^[a-z-]*' stdout)
check "adjust --list names many" [ "$(wc -w <<<"$names")" -ge 20 ]
for name in $names; do
    check "adjust $name --help" exits 0 adjust "$name" --help
    check "adjust $name" exits 0 adjust "$name" base.png "adjusted-$name.png"
done
# With nothing told these change nothing.
for name in brightness-contrast channel color-balance color-enhancer curves exposure gamma \
    hue-saturation levels temperature; do
    check "adjust $name is neutral" same_pixels "adjusted-$name.png" base.png
done
adjusted() { exits 0 adjust "$@" base.png adjusted.png && differ adjusted.png base.png; }
check "brightness" adjusted brightness-contrast --brightness 20
check "contrast" adjusted brightness-contrast --contrast -20
check "curve" adjusted curves --curve 0,0/100,150/255,255
check "red curve" adjusted curves --red-curve 0,50/255,255
check "levels" adjusted levels --input 20,200
check "levels of a channel" adjusted levels --blue-output 255,0
check "colour balance" adjusted color-balance --green 0,30,0
check "hue" adjusted hue-saturation --hue 90
check "colorize flag" adjusted hue-saturation --colorize
check "temperature" adjusted temperature --kelvin 3000
check "channel" adjusted channel --filter hide-red
check "two inversions" exits 0 adjust invert adjusted-invert.png twice.png
check "two inversions are none" same_pixels twice.png base.png
for arguments in "gamma --gamma 9" "gamma --gamma x" "nonsense" "posterize --levels 1" \
    "levels --input 3" "levels --input 0,256" "color-balance --red 1,2" "curves --curve 1,2,3" \
    "tint --shadows nocolour" "dodge --range all" "gamma --levels 3"; do
    # shellcheck disable=SC2086
    check "adjust $arguments" exits 2 adjust $arguments base.png none.png
done
check "adjust alone" exits 2 adjust

check "rotate" exits 0 transform --rotate 90 base.png turned.png
check "rotate back" exits 0 transform --rotate -90 --quality nearest turned.png back.png
check "quarter turns lose nothing" same_pixels back.png base.png
for arguments in "--rotate 30" "--scale 0.3" "--scale 2,0.4 --quality bilinear" "--shear 0.2,0.1" \
    "--matrix 1,0.1,0,1,5,5" "--matrix 1,0,0.001,0,1,0,0,0,1"; do
    # shellcheck disable=SC2086
    check "transform $arguments" exits 0 transform $arguments base.png transformed.png
    check "transform $arguments: another picture" differ transformed.png base.png
done
check "view" exits 0 view --zoom 2.5 --at -3.5,2 --size 50x40 base.png view.png
check "view: its size" exits 0 info view.png
check "view: its size" printed '50 x 40 pixels'
for arguments in "transform" "transform --rotate" "transform --rotate x" "transform --scale 0" \
    "transform --scale 1,2,3" "transform --rotate 1 --scale 2" "transform --matrix 1,2,3,4,5,6,7" \
    "transform --rotate 1 --quality best" "transform --shear nan,1" "view --zoom 0" \
    "view --at 1" "view --size 0x5"; do
    # shellcheck disable=SC2086
    check "$arguments" exits 2 $arguments base.png none.png
done
check "a result beyond all sizes" exits 1 transform --scale 1e6 base.png none.png
check "a result without a pixel" exits 1 transform --scale 0.0001 base.png none.png
check "histogram" exits 0 histogram base.png histogram.png
check "histogram prints four lines" [ "$(wc -l <stdout)" = 4 ]
check "histogram prints thresholds" printed '^luminance *[0-9]* \.\. [0-9]*$'
check "histogram draws" exits 0 info histogram.png
check "histogram without a drawing" exits 0 histogram base.png
check "histogram of a missing file" exits 1 histogram missing.png none.png
check "no output of what failed" absent none.png

# --- blur ------------------------------------------------------------------------------------------

blurred() { # options: the picture differs from base.png
    exits 0 blur "$@" base.png blurred.png && ! same_pixels blurred.png base.png
}
printf '0 -1 0\n-1, 5, -1\n0 -1 0\n' >sharpen.txt
printf '0 0 0\n\n0 1 0\n0 0 0\n' >same.txt
printf '1 2\n3\n' >ragged.txt
printf '1 two\n' >words.txt
: >empty.txt
check "box blur" blurred --box 3
check "gaussian" blurred --gauss 2.5
check "gaussian in a rectangle" blurred --gauss 2.5 --rect 10,10,20x30
check "through a mask" blurred --box 4 --selection base.png
check "sharpening kernel" blurred --kernel sharpen.txt
check "kernel of one" exits 0 blur --kernel same.txt base.png same.png
check "kernel of one changes nothing" same_pixels same.png base.png
check "kernel in a rectangle" blurred --kernel sharpen.txt --rect 30,20,150x120
"$tool" blur --kernel sharpen.txt base.png whole.png
for picture in whole blurred; do
    "$tool" view --zoom 1 --at 30,20 --size 150x120 $picture.png $picture-part.png
done
check "there it is that of the whole picture" same_pixels whole-part.png blurred-part.png
check "box of one" exits 0 blur --box 0 base.png same.png
for arguments in "" "--box 1 --gauss 1" "--box -1" "--box 1.5" "--gauss 0" "--gauss x" \
    "--box 1 --rect 1,2" "--box 1 --rect 9999,0,5x5"; do
    # shellcheck disable=SC2086
    check "blur $arguments" exits 2 blur $arguments base.png none.png
done
for kernel in ragged.txt words.txt empty.txt missing.txt scene.png; do
    check "kernel $kernel" exits 1 blur --kernel $kernel base.png none.png
done
check "no output of what failed" absent none.png

# --- profiles ------------------------------------------------------------------------------------

check "profile assigned" exits 0 profile --assign display-p3 base.png assigned.png
check "profile assigned: pixels" same_pixels assigned.png base.png
check "profile assigned: info" exits 0 info assigned.png
check "profile assigned: name" printed "^  Profile   Display P3$"
check "converted" exits 0 profile --convert-to display-p3 base.png converted.tiff
check "converted: pixels" differ converted.tiff base.png
check "converted: info" exits 0 info converted.tiff
check "converted: name" printed "^  Profile   Display P3$"
check "converted to its own profile" exits 0 profile --convert-to display-p3 assigned.png own.png
check "converted to its own profile: pixels" same_pixels own.png base.png
check "without a profile it is sRGB" exits 0 profile --convert-to srgb base.png srgb.png
check "without a profile it is sRGB: pixels" same_pixels srgb.png base.png

# The profile in a TIFF, which holds it as it is: its length stands in its own first four bytes.
icc_of() { # file
    local offset size
    offset=$(grep -abo -m1 acsp "$1" | head -n 1 | cut -d: -f1)
    offset=$((offset - 36))
    size=$((16#$(tail -c +$((offset + 1)) "$1" | head -c 4 | od -An -tx1 | tr -d ' ')))
    tail -c +$((offset + 1)) "$1" | head -c "$size"
}
icc_of converted.tiff >p3.icc
"$tool" profile --assign srgb base.png srgb.tiff
icc_of srgb.tiff >srgb.icc
check "profile from a file" exits 0 profile --convert-to p3.icc base.png by_file.tiff
check "profile from a file: the same" cmp -s by_file.tiff converted.tiff
check "profile from standard input" exits 0 profile --assign - base.png by_pipe.png <p3.icc
check "profile from standard input: the same" cmp -s by_pipe.png assigned.png
bad_profile() { # what is wrong, file, message
    for option in --assign --convert-to; do
        check "$1: exit code 1" exits 1 profile "$option" "$2" base.png none.png
        check "$1: message" complained "$2: .*$3"
    done
}
bad_profile "missing profile" missing.icc "No such file"
bad_profile "empty profile" empty.png "empty file"
bad_profile "no profile" rubbish.png "not an ICC profile"
head -c -16 p3.icc >cut.icc
bad_profile "truncated profile" cut.icc "truncated"
sed 's/RGB XYZ /CMYKXYZ /' p3.icc >inks.icc
bad_profile "profile for inks" inks.icc "not for RGB"
sed 's/rTRC/rTRX/' p3.icc >curveless.icc
bad_profile "profile without a curve" curveless.icc "damaged"
sed 's/rTRC/rTRX/' srgb.icc >hollow.icc
bad_profile "sRGB by name alone" hollow.icc "damaged"

# Other bytes under the same name: of the same colours, and with red and green exchanged.
sed 's,N/A,N/B,' p3.icc >twin.icc
check "twin profile" differ twin.icc p3.icc
check "converted to a twin" exits 0 profile --convert-to twin.icc assigned.png twin.png
check "converted to a twin: pixels" same_pixels twin.png assigned.png
exchange() { # profile
    sed 's/rXYZ/tXYZ/; s/gXYZ/rXYZ/; s/tXYZ/gXYZ/' "$1"
}
exchange p3.icc >p3_false.icc
check "converted to a namesake" exits 1 profile --convert-to p3_false.icc assigned.png none.png
check "converted to a namesake: message" complained "assigned.png: .*different profiles of the same description"
exchange srgb.icc >srgb_false.icc
check "no profile to a namesake of sRGB" exits 1 profile --convert-to srgb_false.icc base.png none.png
# A JPEG whose EXIF tells that it is in sRGB.
{
    "$tool" convert --format jpg base.png - >bare.jpg
    head -c 2 bare.jpg
    printf '\377\341\0\64Exif\0\0II\52\0\10\0\0\0'
    printf '\1\0\151\207\4\0\1\0\0\0\32\0\0\0\0\0\0\0'
    printf '\1\0\1\240\3\0\1\0\0\0\1\0\0\0\0\0\0\0'
    tail -c +3 bare.jpg
} >space.jpg
sed 's/\(desc.*\)sRGB/\1LCDs/' srgb.icc >renamed.icc
while read -r profile space; do
    check "EXIF with $profile" exits 0 profile --assign "$profile" space.jpg space2.jpg
    check "EXIF with $profile: info" exits 0 info space2.jpg
    check "EXIF with $profile: $space" printed "  Color space information  *$space$"
done <<END
srgb sRGB
renamed.icc sRGB
srgb_false.icc Uncalibrated
p3.icc Uncalibrated
END
"$tool" scene --size 40x30 --format jpg - >plain.jpg
{
    head -c 2 plain.jpg
    printf '\377\342\1\74ICC_PROFILE\0\1\1'
    head -c 300 rubbish.png
    tail -c +3 plain.jpg
} >damaged.jpg
check "damaged profile in a picture" exits 0 info damaged.jpg
check "damaged profile in a picture: shown" printed "^  Profile   damaged$"
check "damaged profile in a picture: conversion" exits 1 profile --convert-to srgb damaged.jpg none.png
check "damaged profile in a picture: message" complained "damaged.jpg: not an ICC profile"
check "damaged profile replaced" exits 0 profile --assign srgb damaged.jpg repaired.jpg
for arguments in "" "--assign srgb --convert-to srgb"; do
    # shellcheck disable=SC2086
    check "profile $arguments" exits 2 profile $arguments base.png none.png
done
check "no output of what failed" absent none.png

# --- white balance -------------------------------------------------------------------------------

check "photo of one colour" exits 0 adjust colorize --color '#c08040' base.png warm.png
for function in auto over under; do
    check "white-balance $function" exits 0 white-balance --function "$function" warm.png "$function.png"
    check "white-balance $function does something" differ "$function.png" warm.png
done
check "white-balance is auto" exits 0 white-balance warm.png default.png
check "white-balance is auto: same picture" same_pixels default.png auto.png
check "no white-balance" exits 0 white-balance --function over --amount 0 warm.png unchanged.png
check "no white-balance: same picture" same_pixels unchanged.png warm.png
for arguments in "--function all" "--amount 101" "--amount -1" "--amount x" "--amount 1.5"; do
    # shellcheck disable=SC2086
    check "white-balance $arguments" exits 2 white-balance $arguments base.png none.png
done
check "white-balance of a missing file" exits 1 white-balance missing.png none.png
check "white-balance without a result" exits 2 white-balance base.png
check "no output of what failed" absent none.png

# --- inpaint -------------------------------------------------------------------------------------

"$tool" scene --picture damage --size 200x160 damage.png
"$tool" convert --format ppm base.png - | "$tool" convert --format png - flat.png
"$tool" blend flat.png damage.png damaged.png
check "inpaint" exits 0 inpaint --mask damage.png damaged.png healed.png
check "inpaint: pixels" differ healed.png damaged.png
check "inpaint with the mask moved away" exits 0 inpaint --mask damage.png --at 200,0 damaged.png far.png
check "inpaint with the mask moved away: pixels" same_pixels far.png damaged.png
check "inpaint from the highest value on" exits 0 \
    inpaint --mask damage.png --threshold 255 damaged.png less.png
check "inpaint from the highest value on: pixels" differ less.png healed.png
"$tool" blend --mode destination-out flat.png damage.png holes.png
check "inpaint what is transparent" exits 0 inpaint holes.png whole.png
check "inpaint what is transparent: pixels" differ whole.png holes.png
for arguments in "--threshold 0" "--threshold x" "--at 5"; do
    # shellcheck disable=SC2086
    check "inpaint $arguments" exits 2 inpaint --mask damage.png $arguments damaged.png none.png
done
check "inpaint --at without a mask" exits 2 inpaint --at 5,5 damaged.png none.png
check "inpaint --keep-partial without a mask" exits 2 inpaint --keep-partial damaged.png none.png
check "inpaint with a missing mask" exits 1 inpaint --mask missing.png damaged.png none.png
check "no output of what failed" absent none.png

# --- draw, fill and select -----------------------------------------------------------------------

drawn() { # file, arguments before the pictures
    local out=$1
    shift
    exits 0 draw "$@" base.png "$out" && differ "$out" base.png
}
# Two ways to write one path.
same_path() {
    check "path $1" drawn path1.png --path "$1" --stroke red --width 5
    check "path $2" drawn path2.png --path "$2" --stroke red --width 5
    check "path $1 is $2" cmp -s path1.png path2.png
}
same_path "M 20 30 L 90 40 L 50 80 Z" "m20,30 70,10-40 40z"
same_path "M 20 30 H 90 V 80 L 100 80" "M20 30h70v50h10"
same_path "M 10 90 C 20 10 60 10 70 90 C 80 170 100 20 130 50" "M10 90c10-80 50-80 60 0s30-70 60-40"
same_path "M 10 50 Q 40 0 70 50 Q 100 100 130 50" "M 10 50 q 30 -50 60 0 t 60 0"
same_path "M 10 50 L 70 50 L 130 50" "M 10 50 T 70 50 S 130 50 130 50"
same_path "M 100 50 A 50 50 0 0 1 50 100" "M 100 50 C 100 77.614237 77.614237 100 50 100"
same_path "M 100 50 A 50 50 0 0 0 50 100" "M 100 50 C 72.385763 50 50 72.385763 50 100"
same_path "M 50 30 a 20 40 90 1 1 0 40" "M 50 70 A 20 40 90 1 0 50 30"
same_path "M 20 60 a1 1 0 01100 0" "M 20 60 A 50 50 0 0 1 120 60"
same_path "M 20 60 A 0 9 0 0 1 120 60 M 5 5 l 0 0" "M 20 60 L 120 60 M 5 5 l 0 0"
same_path "M 20 20 l 30 0 l 0 30 z l 20 70" "M 20 20 h 30 v 30 L 20 20 Z M 20 20 L 40 90"
for path in "" "L 1 1" "1 1" "M" "M 1" "M 1 1 2" "M 1 1 X" "M 1 1 L 2,,3" "M 1 1 2 2," "M 1e9 1" \
    "M 1 1 A 1 1 0 2 0 5 5" "M 1 1 z 5" "M nan 1"; do
    check "path '$path'" exits 2 draw --path "$path" base.png none.png
    check "path '$path': message" complained "the path is wrong at character"
done
check "filled path" drawn filled.png --path "M 20 20 h 90 v 90 z" --fill yellow --outline
check "text" drawn text.png --text "Hello" --fill red --rotate 20 --align center --box 150x80
check "text in another size" drawn text2.png --text "Hello" --fill red --size 20
check "sizes of text differ" differ text.png text2.png
check "picture" drawn image.png --image top.png --at 10,10 --opacity 0.5 --mode multiply
check "it is a blend" exits 0 blend --at 10,10 --opacity 0.5 --mode multiply base.png top.png image2.png
check "it is the same blend" cmp -s image.png image2.png
for arguments in "" "--path M0,0 --text x" "--path M0,0 --mode heal" "--text x --align up" \
    "--path M0,0 --stroke nocolor" "--path M0,0 --width x" "--path M0,0 --join sharp" \
    "--text x --size 0" "--text x --size 12.5" "--text x --box 5" "--text x --stroke red" \
    "--path M0,0 --rotate 5" "--image top.png --fill red"; do
    # shellcheck disable=SC2086
    check "draw $arguments" exits 2 draw $arguments base.png none.png
done
check "draw of a missing picture" exits 1 draw --image missing.png base.png none.png

# Two grounds of one gray, apart by a white line; beyond it a darker spot.
{
    printf 'P2\n9 5\n255\n'
    for _ in 1 2 3 4 5; do echo "100 105 100 255 100 100 100 50 100"; done
} >walls.pgm
"$tool" convert walls.pgm walls.png
check "fill" exits 0 fill --seed 1,2 --tolerance 5 --color red walls.png out.png
check "fill tells where" printed "^3 x 5 pixels at 0,0$"
check "exact fill" exits 0 fill --seed 1,2 --tolerance 0 --color red walls.png out.png
check "exact fill tells where" printed "^1 x 5 pixels at 1,0$"
check "select" exits 0 select --seed 8,0 --tolerance 5,5,5,0 walls.png out.png
check "select tells where" printed "^1 x 5 pixels at 8,0$"
check "select a colour range" exits 0 select --color-range --seed 0,0 --tolerance 4 walls.png out.png
check "select a colour range tells where" printed "^9 x 5 pixels at 0,0$"
check "fill to standard output" exits 0 fill --seed 1,2 walls.png -
check "standard output is a picture" [ "$(head -c 4 stdout | tail -c 3)" = PNG ]
check "a seed outside" exits 1 fill --seed 9,0 walls.png none.png
check "a seed outside: message" complained "walls.png: the seed 9,0 lies outside"
for arguments in "fill" "fill --seed 5" "fill --seed 1,1 --tolerance 256" "fill --seed 1,1 --color x" \
    "select --seed 1,1 --tolerance 1,2" "select --color-range"; do
    # shellcheck disable=SC2086
    check "$arguments" exits 2 $arguments walls.png none.png
done
check "no output of what failed" absent none.png

# --- filter ----------------------------------------------------------------------------------------

check "filter --list" exits 0 filter --list
names=$(grep -o '^[a-z-]*' stdout)
check "filter --list names eleven" [ "$(wc -w <<<"$names")" -eq 11 ]
for name in $names; do
    check "filter $name --help" exits 0 filter "$name" --help
    check "filter $name" exits 0 filter "$name" base.png "filtered-$name.png"
    check "filter $name --save-params" exits 0 filter "$name" --save-params "$name.params"
done
filtered() { # options: the picture differs from base.png
    exits 0 filter "$@" base.png filtered.png && ! same_pixels filtered.png base.png
}
check "vignette" filtered vignette --size 20
check "smoothen" filtered smoothen --amount 255
check "sharpen" filtered sharpen --amount 900
check "high pass" filtered high-pass --radius 3
check "diffuse glow" filtered diffuse-glow --threshold 80
check "noise" filtered add-noise
check "inner shadow" filtered inner-shadow --compose --distance 5,5
for neutral in "vignette --strength 0" "smoothen --amount 0" "sharpen --amount 0" \
    "diffuse-glow --opacity 0" "add-noise --amount 0"; do
    # shellcheck disable=SC2086
    check "filter $neutral" exits 0 filter $neutral base.png same.png
    check "filter $neutral changes nothing" same_pixels same.png base.png
done
check "a blur that grows" exits 0 filter box-blur --radius 7 --grow base.png grown.png
check "it tells the offset" printed "^offset -7,-7$"
"$tool" info grown.png >stdout
check "it has grown" printed "214 x 174 pixels"
check "a blur through a mask" filtered gaussian-blur --selection mask.png --at=-10,70
"$tool" filter box-blur --radius 9 base.png whole.png
check "a blur through a mask is not that of all" differ filtered.png whole.png
check "a shadow below" exits 0 filter drop-shadow --compose --radius 4 --distance 10,-20 \
    opaque.bmp dropped.png
check "a shadow below: offset" printed "^offset 0,-24$"
"$tool" info dropped.png >stdout
check "a shadow below: size" printed "114 x 104 pixels"
printf 'P5\n3 1\n255\n\0\377\0' >dot.pgm
check "a mask grows" exits 0 filter refine-selection --shift 1 dot.pgm white.ppm
check "a mask grows: pixels" [ "$(tail -c 9 white.ppm | od -An -v -tx1)" = " ff ff ff ff ff ff ff ff ff" ]
"$tool" filter drop-shadow --radius 0 --color red --selection dot.pgm --at 1,0 white.ppm shadow.ppm
check "a shadow of what a mask shows" [ "$(tail -c 9 shadow.ppm | od -An -v -tx1)" = " ff ff ff ff ff ff ff 00 00" ]
check "a mask grows on a canvas" exits 0 filter refine-selection --shift 1 --at 4,6 --canvas 20,20 \
    dot.pgm white.ppm
check "a mask grows on a canvas: offset" printed "^offset 3,5$"

"$tool" filter vignette --size 30 --color '#204060' --shape linear --save-params set.params \
    base.png one.png
check "parameters from a file" exits 0 filter vignette --load-params set.params base.png two.png
check "they give the same" cmp -s one.png two.png
check "an option wins" exits 0 filter vignette --load-params set.params --size 25 \
    --save-params other.params base.png two.png
check "an option wins: pixels" differ one.png two.png
check "the others stay" exits 0 filter vignette --load-params other.params --size 30 base.png two.png
check "the others stay: pixels" cmp -s one.png two.png
unreadable() { # what is wrong, message, file
    check "parameters: $1" exits 1 filter vignette --load-params "$3" base.png none.png
    check "parameters: $1: message" complained "$3: .*$2"
}
unreadable "of another filter" "parameters of sharpen, and not of vignette" sharpen.params
for bytes in 0 5 18 20 30 39; do
    head -c "$bytes" set.params >cut.params
    unreadable "cut at $bytes" "not a whole file" cut.params
done
(cat set.params; echo) >long.params
unreadable "more than one's" "not a whole file" long.params
unreadable "none" "." missing.params
{ head -c 18 set.params; printf '\377\377\377\377'; tail -c +23 set.params; } >negative.params
unreadable "out of range" "value for --size is not in 1 \.\. 100000" negative.params
for arguments in "" "nonsense" "vignette --size 0" "vignette --size 1.5" "vignette --color nothing" \
    "gaussian-blur --radius nan" "gaussian-blur --radius 0" "box-blur --radius -1" "sharpen --size 3" \
    "high-pass --mode lighten" "vignette --at 1,1" "refine-selection --selection mask.png" \
    "box-blur --selection mask.png --at 9999,0" "drop-shadow --distance 5"; do
    # shellcheck disable=SC2086
    check "filter $arguments" exits 2 filter $arguments base.png none.png
done
check "filter without files" exits 2 filter vignette
check "filter with one file" exits 2 filter vignette --save-params none.png base.png
check "filter through a missing mask" exits 1 filter vignette --selection missing.png base.png none.png

# --- text ----------------------------------------------------------------------------------------

text() { # file, arguments
    local out=$1
    shift
    exits 0 text --size 60 "$@" "Good evening" "$out"
}
check "text" text text.png
check "text again" text text2.png
check "text is the same again" cmp -s text.png text2.png
for arguments in "--bend 50" "--bend 5 --along-y" "--keystone 30,0" "--keystone 0,-30" "--rotate 20" \
    "--select 5,3" "--caret 0" "--color #80ff0000" "--font serif"; do
    # shellcheck disable=SC2086
    check "text $arguments" text text2.png $arguments
    check "text $arguments: another picture" differ text.png text2.png
done
check "a caret alone" exits 0 text --caret 0 "" caret.png
for arguments in "--font nosuchfont" "--size 0" "--size x" "--bend nan" "--keystone 5" "--rotate 400" \
    "--color nocolor" "--select 5" "--select 5,8" "--select -1,2" "--caret 13" "--caret -1" \
    "--size 2000 --keystone 5000,5000"; do
    # shellcheck disable=SC2086
    check "text $arguments" exits 2 text $arguments "Good evening" none.png
done
check "text of spaces" exits 2 text "  " none.png
check "text of spaces: message" complained "there is nothing to see of '  '"
check "text without a file" exits 2 text "Good evening"
check "no output of what failed" absent none.png

# --- interruption --------------------------------------------------------------------------------

mkdir stopped
echo old >stopped/old.png

mkfifo slow
(head -c 1000 scene.png; exec sleep 60) >slow &
writer=$!
"$tool" convert slow stopped/new.png 2>stderr &
check "SIGINT while reading" ends_on INT $!
check "SIGINT while reading: message" complained "interrupted"
kill $writer

"$tool" convert scene.png - 2>stderr >slow &
job=$!
exec 3<slow
check "SIGTERM while writing" ends_on TERM $job
check "SIGTERM while writing: message" complained "interrupted"
exec 3<&-

"$tool" scene --size 8000x8000 stopped/old.png 2>stderr &
check "SIGINT while working" ends_on INT $!
check "SIGINT while working: message" complained "interrupted"

"$tool" blur --gauss 300 base.png stopped/old.png 2>stderr &
check "SIGINT between lines" ends_on INT $!
check "SIGINT between lines: message" complained "interrupted"

# A slanted band takes hundreds of passes. It comes through a pipe: once that is empty, the filling
# begins.
{
    printf 'P5\n3000 3000\n255\n'
    awk 'BEGIN {
        for (i = 0; i < 3000; ++i) { known = known "k"; hole = hole "h" }
        for (y = 0; y < 3000; ++y)
            printf "%s%s%s", substr(known, 1, 500 + int(y / 9)), substr(hole, 1, 1500),
                substr(known, 1, 1000 - int(y / 9))
    }' | tr kh '\0\377'
} >band.pgm
"$tool" scene --size 3000x3000 wide.bmp
stops_filling() { # after so many seconds, arguments
    local delay=$1
    shift
    "$tool" inpaint --mask slow "$@" 2>stderr &
    local job=$!
    cat band.pgm >slow
    sleep "$delay"
    kill -INT $job # once: a second one would stop the writing too
    wait $job
    [[ $? -eq 1 ]]
}
keeps_partial() { # as soon as the signal is neither too early nor too late to come while filling
    local delay
    for delay in 0.{1..9} 1.{0..9} 2.{0..9}; do
        stops_filling "$delay" --keep-partial wide.bmp partial.bmp && [[ -f partial.bmp ]] && return
        rm -f partial.bmp
    done
    return 1
}
check "SIGINT while filling" stops_filling 0.2 wide.bmp stopped/old.png
check "SIGINT while filling: message" complained "interrupted"
check "SIGINT while filling, keeping it" keeps_partial
check "SIGINT while filling, keeping it: message" complained "interrupted"
check "SIGINT while filling, keeping it: a picture" exits 0 info partial.bmp
check "SIGINT while filling, keeping it: pixels" differ partial.bmp wide.bmp
"$tool" filter gaussian-blur --radius 300 --save-params stopped/new.params base.png \
    stopped/old.png 2>stderr &
check "SIGINT between steps" ends_on INT $!
check "SIGINT between steps: message" complained "interrupted"

check "interruption leaves no new file" [ "$(ls -A stopped)" = old.png ]
check "interruption leaves the old file" cmp -s stopped/old.png <(echo old)

if ((failures)); then
    echo "$failures checks failed"
    exit 1
fi
echo "all checks passed"
