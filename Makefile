# The everyday commands. CMake does the building, see CMakePresets.json; this file only knows the order.
#
#   make run      install what is missing, build, and do the main job on the shipped sample
#   make check    install what is missing, build, and run every test
#   make asan     the same tests with AddressSanitizer and UndefinedBehaviorSanitizer (also: debug, tsan, clang)
#   make bench    ours and its peers side by side
#   make lint     formatting and static analysis
#   make fuzz     every fuzzer for a minute (SECONDS_EACH=60), with the sanitizers
#   make install  PREFIX=/usr/local DESTDIR=

PREFIX ?= /usr/local
JOBS ?= $(shell nproc)
SECONDS_EACH ?= 60

PACKAGES = g++ cmake ninja-build libcli11-dev libgtest-dev libboost-dev pkg-config
BENCH_PACKAGES = libbenchmark-dev libfast-float-dev libgmp-dev libboost-dev libdfp-dev libecpg-dev libabsl-dev \
  libhowardhinnant-date-dev
LINT_PACKAGES = clang-format clang-tidy

SAMPLE = examples/shipments.csv
SAMPLE_TYPES = id:i4,customer:ui4,quantity:i2,parcels:i1,depot:ui2,weight_kg:flt8,discount:flt8,express:bit,tracking:ui8,balance:i8,temperature:flt4,price:money,duty:num(12,4),shipped:datetime,due:datea,pickup:timea

.PHONY: all run check debug asan tsan clang bench lint fuzz format install clean packages

all: packages
	cmake --preset release
	cmake --build --preset release -j $(JOBS)

packages:
	@scripts/install-packages $(PACKAGES)

# Exit status 1 says that the sample's dirty rows were rejected, which is what they are there for.
run: packages
	cmake --preset release
	cmake --build --preset release -j $(JOBS) --target tvxcomn
	@mkdir -p build/run
	build/release/bin/tvxcomn csv --types '$(SAMPLE_TYPES)' --output build/run/shipments.typed.csv \
	  --rejects build/run/shipments.rejects.csv $(SAMPLE) || [ $$? -eq 1 ]

check: all
	ctest --preset release

debug asan tsan clang: packages
	@[ $@ != clang ] || scripts/install-packages clang
	cmake --preset $@
	cmake --build --preset $@ -j $(JOBS)
	ctest --preset $@

bench: packages
	@scripts/install-packages $(BENCH_PACKAGES)
	cmake --preset bench
	cmake --build --preset bench -j $(JOBS) --target tvx_bench
	build/bench/bin/tvx_bench

lint: packages
	@scripts/install-packages $(LINT_PACKAGES) clang
	cmake --preset clang
	scripts/lint build/clang

fuzz: packages
	@scripts/install-packages clang
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS) --target tvx_fuzzers
	scripts/fuzz $(SECONDS_EACH)

format:
	@scripts/install-packages $(LINT_PACKAGES)
	scripts/lint --format

install: packages
	cmake --preset release -DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build --preset release -j $(JOBS)
	cmake --install build/release --prefix $(PREFIX)

clean:
	rm -rf build
