# Every target is one line over scripts/ and the CMake presets. "make help" lists them.
.PHONY: help build demo pictures test windows bench fuzz faults soak format tidy install uninstall package clean

build: ## Build the release preset: build/release/bin/kartix and the library
	@scripts/build release

demo: ## Set up, build, and walk through the main job on sample data; pictures in demo/screenshots
	@scripts/demo

pictures: ## Set up, build, and take the pictures of docs/anwender.md anew
	@scripts/pictures

test: ## Set up, build with sanitizers, and run every test
	@scripts/test

windows: ## Set up, build for Windows (64 and 32 bits), and pack build/kartix-VERSION-windows.zip
	@scripts/windows

bench: ## Set up, build and run the benchmarks
	@scripts/bench

fuzz: ## Set up, build with clang, and run every fuzz target; each for MINUTES, which is 1
	@scripts/fuzz

faults: ## Set up, build, and let one call after another into the system fail in every operation
	@scripts/faults

soak: ## Set up, build, and play 10,000 operations in one process
	@scripts/soak

format: ## Format every source file
	@scripts/format

tidy: ## Look over every source file with clang-tidy
	@scripts/tidy

install: build ## Install the release build; PREFIX (default /usr/local) and DESTDIR are heeded
	@cmake --install build/release $(if $(PREFIX),--prefix $(PREFIX))

uninstall: build ## Remove what "make install" with the same PREFIX and DESTDIR has installed
	@PREFIX=$(PREFIX) DESTDIR=$(DESTDIR) scripts/uninstall

package: ## Build Debian packages of library, development files and command: build/package/*.deb
	@scripts/package

clean: ## Remove everything that was built and the demonstration's files
	@rm -rf build demo

help: ## List the targets
	@awk -F ':.*## ' '/^[a-z]+:.*## /{ printf "  make %-9s %s\n", $$1, $$2 }' $(MAKEFILE_LIST)
