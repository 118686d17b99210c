"""The bill of parts of an assembly as CSV: each kind of part with how often it occurs and what it measures.

    python3 Examples/parts_list.py assembly.step parts.csv
"""

import argparse
import csv
from collections import defaultdict
from typing import Dict, List, Tuple

import quillet

options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
options.add_argument("model")
options.add_argument("file")
chosen = options.parse_args()

quillet.open_document(chosen.model)
# Parts of one name that measure the same are of one kind.
kinds: Dict[Tuple[str, float, float], List[quillet.Component]] = defaultdict(list)
for part in quillet.model().walk():
    if part.body:
        kinds[part.name, round(part.body.volume, 3), round(part.body.area, 3)].append(part)

with open(chosen.file, "w", newline="", encoding="utf-8") as file:
    table = csv.writer(file)
    table.writerow(["number", "name", "count", "volume of one in mm3", "area of one in mm2", "faces", "where"])
    for number, ((name, volume, area), parts) in enumerate(sorted(kinds.items()), 1):
        table.writerow([number, name, len(parts), volume, area, len(parts[0].faces),
                        " ".join(part.path for part in parts)])
print(f"{len(kinds)} kinds, {sum(map(len, kinds.values()))} parts")
