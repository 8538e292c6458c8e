#!/usr/bin/env bash
# Installs the build, builds the example against the installed package by CMake and by pkg-config,
# and runs both on a picture.
#   package_test.sh BUILD_DIR SOURCE_DIR COMPILER
set -euo pipefail
build=$1 source=$2 compiler=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "package_test: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$work/root" >/dev/null
cmake -S "$source/examples/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/root" \
    -DCMAKE_CXX_COMPILER="$compiler" >/dev/null
cmake --build "$work/build" >/dev/null

pc=$(find "$work/root" -name libimage.pc)
[ -n "$pc" ] || fail "no pkg-config file"
# shellcheck disable=SC2046
PKG_CONFIG_PATH=$(dirname "$pc") "$compiler" -std=c++17 -fPIC "$source/examples/consumer/main.cpp" \
    -o "$work/by_pkgconfig" $(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs libimage)

# A red and blue checker of 300 x 200 pixels, as the simplest format that there is.
{
    printf 'P3\n300 200\n255\n'
    awk 'BEGIN { for (i = 0; i < 60000; ++i) print (i % 7 ? "0 0 250" : "250 0 0") }'
} > "$work/in.ppm"
library=$(dirname "$(find "$work/root" -name 'libimage.so.?')")
for program in "$work/build/consumer" "$work/by_pkgconfig"; do
    said=$(LD_LIBRARY_PATH=$library "$program" "$work/in.ppm" "$work/out.ppm" 2>/dev/null)
    [ "$said" = "300 x 200 pixels, 3 x 2 tiles" ] || fail "$program said: $said"
    # Binary PPM: the first row is red, the second as it was.
    head -c 18 "$work/out.ppm" | tail -c 3 | od -An -tu1 | grep -q '255 *0 *0' || fail "first row"
    tail -c 3 "$work/out.ppm" | od -An -tu1 | grep -Eq '0 +0 +250|250 +0 +0' || fail "last pixel"
    rm "$work/out.ppm"
done

# A stranger's header must compile alone.
for header in "$work"/root/include/libimage/*.h; do
    # shellcheck disable=SC2046
    echo "#include <$(basename "$header")>" | "$compiler" -std=c++17 -fPIC -fsyntax-only -xc++ - \
        $(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags libimage) || fail "$header"
done

# Nothing leaks out of the library but its own names.
own='LX|RM|AdjustValue|BicubicTransformImage|BilinearTransformImage|Compare|Create|Draw|FillPath|GetOutOfRangeColor|InvertImage|NearestNeighbourTransformImage|ScaleImage|ScaleLine|scaleLineNew|bool TransformImage|void Blend|Make|Clamp|VoltageToIntensitySrgb|Extends|ConvertImage|Blend|getHue|getYCbCr|getYUV|operator<<|operator>>|__bss_start|_edata|_end'
foreign=$(nm -DC --defined-only "$library/libimage.so.0" | cut -c20- |
    sed -E 's/^((typeinfo|vtable|typeinfo name) for|guard variable for|unsigned (short|char)|float|QImage) //' |
    grep -vE "^($own)" || true)
[ -z "$foreign" ] || fail "exported too: $foreign"
echo "package_test: ok"
