#!/usr/bin/env bash
# Renders the drawings in resource/src/ to the pictures that the program loads. Needs rsvg-convert
# (librsvg2-bin) and convert (imagemagick). Run it after a change of a drawing and commit the pictures;
# an unchanged drawing gives the same bytes again.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
src="$root/resource/src"
out="$root/resource"
icons="$out/icons"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

for tool in rsvg-convert convert; do
    command -v "$tool" >/dev/null || { echo "render-pictures: $tool is missing" >&2; exit 1; }
done

# png <drawing> <width> <height> [file]
png() {
    rsvg-convert --width "$2" --height "$3" --output "${4:-$out/$1.png}" "$src/$1.svg"
}

# The list paints these at 20x20; four times that size is sharp on any screen.
for name in eye trash; do
    png "$name" 80 80
done
for name in tool_new tool_news tool_import tool_export tool_delete_all \
            pnpOpenIcon pnpCloseIcon httpdOpenIcon httpdCloseIcon; do
    png "$name" 64 64
done
png search 40 40
png check 40 40
png arrow_down 24 24

# Message boxes show these at 32x32.
for name in information question warning critical; do
    png "message_$name" 96 96
done

png selected_row 277 42
png separator 64 1
png loading 64 64

# A JPEG has no transparency. High quality without subsampling keeps colours from blurring.
png row_background 64 30 "$work/row_background.png"
convert "$work/row_background.png" -strip -sampling-factor 4:4:4 -quality 98 "$out/row_background.jpg"

# The help window. Its arrows are one drawing in three states, rotated for the other direction. Its
# background is dark and soft, so compression is invisible.
guide="$out/UserGuide"
mkdir -p "$guide"
png UserGuide 128 128 "$guide/UserGuide.png"
png right_BG 1360 1120 "$work/right_BG.png"
convert "$work/right_BG.png" -strip -quality 85 "$guide/right_BG.jpg"
# arrow <state> <fill> <ring> <arrow>
arrow() {
    local direction angle=0
    for direction in up down; do
        sed "s/@ANGLE@/$angle/; s/@FILL@/$2/; s/@RING@/$3/; s/@ARROW@/$4/" "$src/guide_arrow.svg" >"$work/arrow.svg"
        rsvg-convert --width 80 --height 80 --output "$guide/arrow_${direction}_$1.png" "$work/arrow.svg"
        angle=180
    done
}
arrow unpressed '#2d3743' '#8ee0ff' '#8ee0ff'
arrow pressed '#8ee0ff' '#8ee0ff' '#22272e'
arrow disable 'none' '#5d6a7a' '#76859a'

# The busy animation: one turn of the wheel in twelve steps. A GIF pixel is either opaque or clear, so
# the bars are blended with the colour of the busy window over a light background; only nearly
# transparent pixels stay clear.
for step in 0 1 2 3 4 5 6 7 8 9 10 11; do
    frame="$work/step_$(printf %02d "$step")"
    sed "s/@ANGLE@/$((step * 30))/" "$src/loading_animation.svg" >"$frame.svg"
    rsvg-convert --width 192 --height 192 --output "$frame.png" "$frame.svg"
    convert "$frame.png" \( +clone -alpha extract -threshold 15% \) \
        \( -clone 0 -background '#536070' -alpha remove \) \
        -delete 0 +swap -alpha off -compose CopyOpacity -composite "$frame.gif.png"
done
convert -delay 8 -loop 0 -dispose background "$work"/step_*.gif.png -strip "$out/loading_animation.gif"

# The logo. Its small sizes have their own drawing, on the pixel grid.
mkdir -p "$icons"
png logo 256 256
png logo_small 16 16 "$icons/logo_16.png"
png logo_small 32 32 "$icons/logo_32.png"
png logo 48 48 "$icons/logo_48.png"
png logo 256 256 "$icons/logo_256.png"

# The icon of the Windows executable and of its installer.
convert "$icons/logo_16.png" "$icons/logo_32.png" "$icons/logo_48.png" "$icons/logo_256.png" \
    -strip -define png:exclude-chunks=date,time "$icons/logo.ico"
