#!/usr/bin/env bash
# Checks that includes between the library's folders point one way: each folder may include
# only folders of a lower rank (or its own). Framework folders sit above Core, Core above the
# platform; inside the platform: Input → Views → Layers → Graphics → Device → Foundation →
# Primitives. One exception: views and input are one layer in two folders. Input's classes take
# views as their subjects, while the window dispatches touches and the scroll view drags with a
# recogniser; so Views' .cpp files may include Input headers, but Views' headers never do.
set -euo pipefail
cd "$(dirname "$0")/../Source/VelmarCoreUI"

rank() {
    case $1 in
        Platform/Primitives) echo 0 ;;
        Platform/Foundation) echo 1 ;;
        Platform/Device) echo 2 ;;
        Platform/Graphics) echo 3 ;;
        Platform/Layers) echo 4 ;;
        Platform/Views) echo 5 ;;
        Platform/Input) echo 6 ;;
        Core) echo 7 ;;
        *) echo 8 ;;  # the framework: Color, Models, Utilities, Animation, Graphing, Views
    esac
}

folder_of() {  # the area of a path below Source/VelmarCoreUI: "Platform/Graphics", "Color", "."
    local path=$1
    case $path in
        Platform/*) path=${path#Platform/}; echo "Platform/${path%%/*}" ;;
        */*) echo "${path%%/*}" ;;
        *) echo "." ;;
    esac
}

bad=0
while IFS= read -r file; do
    from=$(folder_of "${file#./}")
    [[ $from == . ]] && continue  # the umbrella and version headers may include anything
    while IFS= read -r included; do
        to=$(folder_of "$included")
        [[ $to == . || $to == "$from" ]] && continue
        [[ $from == Platform/Views && $to == Platform/Input && $file == *.cpp ]] && continue
        if (($(rank "$to") >= $(rank "$from"))) && [[ $(rank "$from") -lt 8 ]]; then
            echo "layering: ${file#./} includes $included ($from may not include $to)"
            bad=1
        fi
    done < <(sed -n 's|^#include <VelmarCoreUI/\(.*\)>.*|\1|p' "$file")
done < <(find . -name '*.h' -o -name '*.cpp')
if ((bad == 0)); then
    echo "layering: ok"
fi
exit $bad
