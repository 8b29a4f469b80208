"""labels.py SOURCE WORKING OUTPUT: copies labels and categories by name, without regard to case."""
import copy
import sys

from lxml import etree

DDI = "{ddi:codebook:2_5}"


def main(source_path, working_path, output_path):
    source = etree.parse(source_path)
    working = etree.parse(working_path)
    by_name = {var.get("name").upper(): var for var in source.iter(DDI + "var")}
    for var in working.iter(DDI + "var"):
        match = by_name.get(var.get("name").upper())
        if match is None:
            continue
        for old in var.findall(DDI + "labl") + var.findall(DDI + "catgry"):
            var.remove(old)
        children = [copy.deepcopy(child) for child in match.iterchildren(DDI + "labl", DDI + "catgry")]
        position = 1 if len(var) and var[0].tag == DDI + "location" else 0
        var[position:position] = children
    working.write(output_path, encoding="UTF-8", xml_declaration=True)


main(*sys.argv[1:])
