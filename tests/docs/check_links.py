#!/usr/bin/env python3
"""Whether every link in the project's Markdown files leads to a file of the project and to a heading in it."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")


def text_without_code(path):
    text = path.read_text(encoding="utf-8")
    text = re.sub(r"^```.*?^```", "", text, flags=re.MULTILINE | re.DOTALL)
    return re.sub(r"`[^`\n]*`", lambda match: re.sub(r"[\[\]()]", "", match.group()), text)


def anchors(path):
    """The names by which headings can be reached, made as the usual renderers make them."""
    found = set()
    for heading in re.findall(r"^#+ (.*)$", text_without_code(path), flags=re.MULTILINE):
        name = re.sub(r"[^\w\- ]", "", heading.strip().lower())
        found.add(name.replace(" ", "-"))
    return found


def pages():
    for folder in (".", "docs", "samples", "fuzz", "host", "cocoa", "tests", "benchmarks", "resources"):
        pattern = "*.md" if folder == "." else "**/*.md"
        yield from sorted((ROOT / folder).glob(pattern))


def problems_of(page):
    for target in LINK.findall(text_without_code(page)):
        if re.match(r"[a-z]+:", target):
            continue
        file, _, anchor = target.partition("#")
        path = (page.parent / file).resolve() if file else page
        if not path.exists():
            yield f"{target}: no such file"
        elif anchor and path.suffix == ".md" and anchor not in anchors(path):
            yield f"{target}: no such heading"


def main():
    failures = [f"{page.relative_to(ROOT)}: {problem}" for page in pages() for problem in problems_of(page)]
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
