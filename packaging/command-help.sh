#!/bin/sh
# Writes the help2man include file of tarnwick-cli: every command's own --help as a section of
# the manual page, so the page describes flash, pack, …, station as the program does.
# Usage: command-help.sh TARNWICK_CLI OUTPUT
set -eu
cli=$1
out=$2
{
  echo "[COMMANDS]"
  for command in flash pack check info ports station; do
    echo ".SS $command"
    echo ".nf"
    # roff reads a backslash as an escape and a leading dot as a request.
    LANGUAGE=en LC_ALL=C.UTF-8 "$cli" "$command" --help | sed -e 's/\\/\\e/g' -e 's/^\./\\\&./'
    echo ".fi"
  done
} > "$out"
