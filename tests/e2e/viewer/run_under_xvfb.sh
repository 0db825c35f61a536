#!/bin/sh
# Runs the viewer's end-to-end tests on a fresh Xvfb display; exits 77 (CTest
# counts it as skipped) when a tool they need is missing.
for tool in xvfb-run xdotool import; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "skipped: $tool is not installed (scripts/bootstrap installs it)"
    exit 77
  fi
done
exec xvfb-run -a -s "-screen 0 1280x1024x24" "$@"
