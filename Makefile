# Thin wrapper around CMake: `make` builds Release into build/,
# `make run` starts the engine, `make test` runs every test,
# `make fingerprints [ROWS="0 7"]` compares the self-test searches with the
# reference.
BUILD_DIR ?= build

.PHONY: all run test fingerprints clean

all: $(BUILD_DIR)/build.ninja
	cmake --build $(BUILD_DIR)

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release

run: all
	./$(BUILD_DIR)/tarvok

test: all
	cd $(BUILD_DIR) && ctest --output-on-failure

fingerprints: all
	./$(BUILD_DIR)/tarvok-tool fingerprints $(ROWS)

clean:
	rm -rf $(BUILD_DIR)
