# Thin wrapper around CMake: `make` builds the engine and the developer
# tool (Release, build/), `make run` starts the engine, `make install
# [PREFIX=/usr/local]` installs both into PREFIX/bin and `make uninstall`
# removes them again, `make test` builds the tests and runs them all (needs
# GoogleTest), `make test-sanitize` runs every test again under
# AddressSanitizer and UndefinedBehaviorSanitizer (build-sanitize/),
# `make test-tsan` runs the tests that search with several threads under
# ThreadSanitizer (build-tsan/),
# `make fuzz` builds the libFuzzer targets with clang (build-fuzz/),
# `make fingerprints [ROWS="0 7"]` compares the self-test searches with the
# reference, `make profile-build` builds the fastest engine, trained on the
# self-test positions (build-profile/tarvok). TARVOK_ARCH=native (or another
# -march value) compiles for that instruction set instead of x86-64-v2.
#
# CMAKE_ARGS is passed to CMake when a build directory is configured, for
# example CMAKE_ARGS=-DCMAKE_DISABLE_FIND_PACKAGE_GTest=TRUE to build as on
# a machine without GoogleTest. With CI=true in the environment, warnings
# are errors in every build directory configured.
BUILD_DIR ?= build
SANITIZE_DIR ?= build-sanitize
TSAN_DIR ?= build-tsan
FUZZ_DIR ?= build-fuzz
PROFILE_DIR ?= build-profile
JOBS ?= 2
PREFIX ?= /usr/local
CMAKE_ARGS ?=

ifeq ($(CI),true)
WERROR := -DTARVOK_WERROR=ON
endif
# An instruction set given on the command line is written into the build
# directory's cache, where it stays for later builds.
ARCH := $(if $(TARVOK_ARCH),-DTARVOK_ARCH=$(TARVOK_ARCH))

# $(call configure,DIR,ARGS): configure build directory DIR with ARGS.
configure = cmake -S . -B $(1) -G Ninja $(2) $(WERROR) $(ARCH) $(CMAKE_ARGS)
# $(call build-tests,DIR): build the tests of DIR and run them all.
build-tests = cmake --build $(1) -j$(JOBS) --target tarvok-tests && cd $(1) && ctest --output-on-failure

.PHONY: all run install uninstall test test-sanitize test-tsan fuzz fingerprints profile-build clean

# The play build: what `make run` starts and `make install` installs.
all: $(BUILD_DIR)/build.ninja
	$(if $(ARCH),cmake -B $(BUILD_DIR) $(ARCH))
	cmake --build $(BUILD_DIR) -j$(JOBS) --target tarvok tarvok-tool

$(BUILD_DIR)/build.ninja:
	$(call configure,$(BUILD_DIR),-DCMAKE_BUILD_TYPE=Release)

run: all
	./$(BUILD_DIR)/tarvok

install: all
	cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

# Removes the files the last `make install` listed in its manifest (which
# CMake ends without a newline: the last line counts too).
uninstall:
	@test -f $(BUILD_DIR)/install_manifest.txt || { echo "nothing to uninstall: no $(BUILD_DIR)/install_manifest.txt"; exit 1; }
	while IFS= read -r file || [ -n "$$file" ]; do rm -fv "$$file"; done < $(BUILD_DIR)/install_manifest.txt
	rm -f $(BUILD_DIR)/install_manifest.txt

test: $(BUILD_DIR)/build.ninja
	$(call build-tests,$(BUILD_DIR))

$(SANITIZE_DIR)/build.ninja:
	$(call configure,$(SANITIZE_DIR),-DCMAKE_BUILD_TYPE=Sanitize)

test-sanitize: $(SANITIZE_DIR)/build.ninja
	$(call build-tests,$(SANITIZE_DIR))

$(TSAN_DIR)/build.ninja:
	$(call configure,$(TSAN_DIR),-DCMAKE_BUILD_TYPE=Tsan)

# Only the tests whose engines search with helper threads: the rest run one
# thread, which the other two builds cover.
test-tsan: $(TSAN_DIR)/build.ninja
	cmake --build $(TSAN_DIR) -j$(JOBS) --target tarvok-tests && cd $(TSAN_DIR) && ctest --output-on-failure -R '^Threads\.'

$(FUZZ_DIR)/build.ninja:
	$(call configure,$(FUZZ_DIR),-DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Fuzz -DTARVOK_FUZZ=ON -DBUILD_TESTING=OFF)

fuzz: $(FUZZ_DIR)/build.ninja
	cmake --build $(FUZZ_DIR) -j$(JOBS)

# Both stages of the profile-guided build in one directory (the counts are
# found beside the object files that wrote them): an instrumented engine, a
# pass of its self-test to train it, then the engine rebuilt with the counts.
profile-build:
	rm -rf $(PROFILE_DIR)
	$(call configure,$(PROFILE_DIR),-DCMAKE_BUILD_TYPE=Release -DTARVOK_PGO=generate -DBUILD_TESTING=OFF)
	cmake --build $(PROFILE_DIR) -j$(JOBS) --target tarvok
	tools/profile-train.sh $(PROFILE_DIR)/tarvok
	cmake -S . -B $(PROFILE_DIR) -DTARVOK_PGO=use
	cmake --build $(PROFILE_DIR) -j$(JOBS) --target tarvok tarvok-tool

fingerprints: all
	./$(BUILD_DIR)/tarvok-tool fingerprints $(ROWS)

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR) $(FUZZ_DIR) $(PROFILE_DIR)
