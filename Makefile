# Thin wrapper around CMake: `make` builds Release into build/,
# `make run` starts the engine, `make test` runs every test,
# `make test-sanitize` runs every test again under AddressSanitizer and
# UndefinedBehaviorSanitizer (build-sanitize/), `make fuzz` builds the
# libFuzzer targets with clang (build-fuzz/),
# `make fingerprints [ROWS="0 7"]` compares the self-test searches with the
# reference.
BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
FUZZ_DIR ?= build-fuzz
JOBS ?= 2

.PHONY: all run test test-sanitize fuzz fingerprints clean

all: $(BUILD_DIR)/build.ninja
	cmake --build $(BUILD_DIR) -j$(JOBS)

$(BUILD_DIR)/build.ninja:
	cmake -S . -B $(BUILD_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Release

run: all
	./$(BUILD_DIR)/tarvok

test: all
	cd $(BUILD_DIR) && ctest --output-on-failure

$(SANITIZE_DIR)/build.ninja:
	cmake -S . -B $(SANITIZE_DIR) -G Ninja -DCMAKE_BUILD_TYPE=Sanitize

test-sanitize: $(SANITIZE_DIR)/build.ninja
	cmake --build $(SANITIZE_DIR) -j$(JOBS)
	cd $(SANITIZE_DIR) && ctest --output-on-failure

$(FUZZ_DIR)/build.ninja:
	cmake -S . -B $(FUZZ_DIR) -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Fuzz -DTARVOK_FUZZ=ON

fuzz: $(FUZZ_DIR)/build.ninja
	cmake --build $(FUZZ_DIR) -j$(JOBS)

fingerprints: all
	./$(BUILD_DIR)/tarvok-tool fingerprints $(ROWS)

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(FUZZ_DIR)
