"""Opens saved drawings with ezdxf, an independent DXF reader.

Input: a file of lines "SAVED<TAB>ORIGINAL". A saved file must open with
ezdxf.readfile; when ezdxf also rejects the original, its recovery reader may
be used instead. Prints one line per file that fails and exits non-zero then.
"""
import sys

import ezdxf
from ezdxf import recover


def opens_strictly(path):
    try:
        ezdxf.readfile(path)
        return None
    except Exception as error:  # the reader's own complaint is the message
        return f"{type(error).__name__}: {error}"


def main(list_path):
    failures = 0
    with open(list_path, encoding="utf-8") as listing:
        for line in listing:
            saved, original = line.rstrip("\n").split("\t")
            problem = opens_strictly(saved)
            if problem is None:
                continue
            if opens_strictly(original) is not None:
                try:
                    recover.readfile(saved)
                    continue
                except Exception as error:
                    problem = f"{type(error).__name__}: {error}"
            print(f"{saved}: {problem[:300]}")
            failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
