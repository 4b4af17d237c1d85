# Run as `cmake -DMESSAGE=... -P fail.cmake`: a build step that stops the
# build with MESSAGE, for a target that can't be built on this machine.
message(FATAL_ERROR "${MESSAGE}")
