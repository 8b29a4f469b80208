// A filter: boxes to choose by, each with how much there is of it.

import { digits, element, shown } from "./elements.js";

/** @typedef {{id: string, title: string, className?: string}} Choice */

/** None chosen is as if all were. */
export class Facet {
  /**
   * @param {string} title
   * @param {Choice[]} choices
   * @param {Set<string>} chosen the IDs of those that are; it is changed
   * @param {() => void} onChange
   */
  constructor(title, choices, chosen, onChange) {
    this.chosen = chosen;
    /** @type {Map<string, HTMLElement>} */
    this.counts = new Map();
    /** @type {HTMLInputElement[]} */
    this.boxes = [];
    const rows = choices.map(({ id, title: text, className = "" }) => {
      const box = /** @type {HTMLInputElement} */ (element("input", { type: "checkbox" }));
      box.checked = chosen.has(id);
      box.addEventListener("change", () => {
        if (box.checked) {
          chosen.add(id);
        } else {
          chosen.delete(id);
        }
        onChange();
      });
      const count = element("span", { class: "count" });
      this.counts.set(id, count);
      this.boxes.push(box);
      return element(
        "label",
        { class: className },
        box,
        element("span", { class: "title" }, shown(text)),
        count,
      );
    });
    this.element = element("fieldset", { hidden: rows.length === 0 }, element("legend", {}, title), ...rows);
  }

  /** @param {Map<string, number>} counts by ID */
  count(counts) {
    for (const [id, place] of this.counts) place.textContent = digits(counts.get(id) ?? 0);
  }

  clear() {
    this.chosen.clear();
    for (const box of this.boxes) box.checked = false;
  }
}
