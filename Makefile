# Thin wrapper around CMake: `make` builds Release into build/,
# `make run` starts the engine, `make test` runs every test.
BUILD_DIR ?= build

.PHONY: all run test clean

all: $(BUILD_DIR)/build.ninja
	cmake --build $(BUILD_DIR)

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release

run: all
	./$(BUILD_DIR)/tarvok

test: all
	cd $(BUILD_DIR) && ctest --output-on-failure

clean:
	rm -rf $(BUILD_DIR)
