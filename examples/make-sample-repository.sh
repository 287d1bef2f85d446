#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes a git repository of the sample themes with two commits on "master", the way a curated theme
# repository grows: the first commit publishes some themes at older versions, the second brings every
# theme of examples/sample-repository up to date. Prints the path of the new repository.
#
# usage: make-sample-repository.sh TARGET_DIR
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
target=${1:?usage: make-sample-repository.sh TARGET_DIR}

rm -rf "$target"
mkdir -p "$target/Themes"
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME="Theme Curator" GIT_AUTHOR_EMAIL="curator@example.org"
export GIT_COMMITTER_NAME="Theme Curator" GIT_COMMITTER_EMAIL="curator@example.org"
git -C "$target" init --quiet --initial-branch=master

# First commit: three themes, two of them at older versions.
for theme in harbor-night ember paper-mint; do
  cp "$here/sample-repository/Themes/$theme.theme.json" "$target/Themes/"
done
sed -i 's/"version": "2.1.0"/"version": "2.0.3"/' "$target/Themes/harbor-night.theme.json"
sed -i 's/"version": "1.4.2"/"version": "1.3.0"/' "$target/Themes/ember.theme.json"
cp "$here/sample-repository/README.md" "$target/README.md"
git -C "$target" add --all
GIT_AUTHOR_DATE="2026-09-01T10:00:00Z" GIT_COMMITTER_DATE="2026-09-01T10:00:00Z" \
  git -C "$target" commit --quiet -m "Publish Harbor Night, Ember and Paper Mint"

# Second commit: everything as it stands now.
cp "$here"/sample-repository/Themes/*.theme.json "$target/Themes/"
git -C "$target" add --all
GIT_AUTHOR_DATE="2026-11-01T10:00:00Z" GIT_COMMITTER_DATE="2026-11-01T10:00:00Z" \
  git -C "$target" commit --quiet -m "Add Harbor Day, Nordlys and Sandstone; update Harbor Night and Ember"

echo "$target"
