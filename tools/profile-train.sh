#!/usr/bin/env bash
# Trains a profile-generating engine: one pass of its self-test (the 50
# positions searched to depth 13), then quit, so that the engine leaves
# through its normal exit and writes its counts.
set -euo pipefail
engine=$1
coproc ENGINE { "$engine" -test; }
pid=$ENGINE_PID
out=${ENGINE[0]}
in=${ENGINE[1]}
while IFS= read -r line <&"$out"; do
  case "$line" in
    "   1 "*) echo "$line"; echo quit >&"$in"; break ;;
  esac
done
wait "$pid"
