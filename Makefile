# Thin front over the CMake presets. Every target installs what is missing first.
PRESET ?= default
BUILD  := build/$(PRESET)
RUN    := $(CURDIR)/tools/winerun --state $(CURDIR)/$(BUILD)/wine

.PHONY: setup configure build demo test bench package docs format clean

setup:
	@tools/setup.sh

configure: setup
	@cmake --preset $(PRESET) >/dev/null

build: configure
	@cmake --build --preset $(PRESET)

# Builds and runs the gallery host: loads velkin.dll as a package and shows it working.
# The dialogs are captured first in Russian and French and on a 144-DPI screen
# (a prefix of its own), so that the full run puts them beside the English ones.
DENSE := $(CURDIR)/tools/winerun --state $(CURDIR)/$(BUILD)/wine144 --from $(CURDIR)/$(BUILD)/wine
demo: configure
	@cmake --build --preset $(PRESET) --target gallery gallery_pictures
	@$(RUN) --prepare
	@$(DENSE) reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d 144 /f >/dev/null 2>&1
	@cd $(BUILD)/bin && for locale in ru_RU fr_FR; do \
	  LC_ALL=$$locale.UTF-8 $(RUN) gallery.exe --dialogs-only >/dev/null || echo "gallery: dialogs in $$locale failed"; done; \
	  $(DENSE) gallery.exe --dialogs-only >/dev/null || echo "gallery: dialogs at 144 DPI failed"; \
	  $(RUN) gallery.exe; rc=$$?; $(RUN) --shutdown; $(DENSE) --shutdown; exit $$rc

# Builds and runs every test; the last lines are CTest's summary.
# The Wine prefix is made first (once, ~20 s): CTest lists each program's cases
# under Wine, and that listing has a time limit.
# At the end every prefix the tests used is stopped, the dense ones included.
test: build
	@$(RUN) --prepare
	@ctest --preset $(PRESET); rc=$$?; $(RUN) --shutdown; \
	  for s in wine144 wine192; do [ ! -d $(BUILD)/$$s ] || tools/winerun --state $(BUILD)/$$s --shutdown; done; exit $$rc

# Builds and runs every benchmark in bench/, each printing figures beside its baseline.
bench: build
	@$(RUN) --prepare
	@rc=0; for b in $(BUILD)/bin/bench_*.exe; do [ -e "$$b" ] || continue; \
	  echo "== $$(basename $$b .exe)"; $(RUN) "$$b" || rc=1; done; $(RUN) --shutdown; exit $$rc

# The SDK archive: build/<preset>/package/Velkin-<version>-win64.zip, with the API reference.
package: docs
	@cd $(BUILD) && cpack -C RelWithDebInfo -B package

# The API reference of the public headers: build/<preset>/docs/html/index.html.
# Fails on a public class or free function without a comment.
docs: build
	@tools/docs.sh $(BUILD)

format:
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	@rm -rf $(BUILD)
