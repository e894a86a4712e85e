# The front door. Each target is one script or one preset; see docs/development.md.

.DEFAULT_GOAL := build
.PHONY: run screenshots check-docs windows test-windows package test-packages test soak build bench sanitize coverage mutants fuzz format format-check tidy

# Builds what is needed and opens the assistant on the demo service (on a screen in memory without a
# display).
run:
	scripts/run.sh

# Every test, release build; TESTS="-L e2e" takes only those, as ctest does.
test:
	scripts/test.sh release $(TESTS)

# Ten minutes of mixed work against a service that keeps failing; longer: scripts/soak.sh --minutes N.
soak:
	scripts/soak.sh

# The documents: links, paths, and every command in them, which is run.
check-docs:
	scripts/check_docs.sh

# Every state of every window as pictures on one page: build/screenshots/index.html.
screenshots:
	scripts/screenshots.sh

# The release build; the program is build/release/bin/Miravel.
build:
	scripts/build.sh release

# What the program costs against the bare Qt: one table, also in build/bench/results.json.
bench:
	scripts/bench.sh

# The folder that goes to a Windows machine: build/windows/bin.
windows:
	scripts/windows/build.sh

# The tests and the real program under Wine.
test-windows:
	scripts/windows/test.sh

# What an administrator installs: build/dist.
package:
	scripts/windows/package.sh

# The packages, installed, upgraded and removed under Wine.
test-packages:
	scripts/windows/test.sh --packages

# Every test under ASan and UBSan, the threaded ones under TSan.
sanitize:
	scripts/sanitize.sh

# Which of our own lines and branches the tests reach: build/coverage/report/index.html. Fails below
# 98 % of the lines.
coverage:
	scripts/coverage.sh

# Random changes that no test notices; MUTANTS=n says how many are tried, else 200.
mutants:
	scripts/mutants.sh

# Every fuzzer for FUZZ_SECONDS (60), with clang; docs/development.md says more.
fuzz:
	scripts/fuzz.sh

# Rewrites the C++ sources in the project's style.
format:
	scripts/format.sh

# Fails when a source is not in the project's style.
format-check:
	scripts/format.sh --check

# clang-tidy over all our own C++ sources.
tidy:
	scripts/tidy.sh
