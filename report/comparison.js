// What differs between two values of a property, as rows for people. Values have the form that
// `applydic show --json` gives them.

/**
 * @typedef {"same" | "added" | "removed" | "changed"} State
 *
 * One line of a comparison: a single value, or one of a list. Absent is null.
 * @typedef {object} Row
 * @property {string | null} key what the line is about: a value, the name of an attribute or a set
 * @property {boolean} isNumber whether the key is one
 * @property {string | null} before
 * @property {string | null} after
 * @property {State} state
 *
 * @typedef {object} Comparison
 * @property {string} title
 * @property {boolean} isList rows stand for the items of a list
 * @property {boolean} isReordered the items that both lists have stand in another order
 * @property {Row[]} rows
 *
 * @typedef {Record<string, any>} Values by the name of a property
 */

/** What the properties of a variable and the items of a file are called. */
const TITLES = new Map([
  ["name", "name"],
  ["type", "type"],
  ["label", "label"],
  ["valueLabels", "value labels"],
  ["missing", "missing values"],
  ["print", "print format"],
  ["write", "write format"],
  ["columnWidth", "column width"],
  ["level", "level"],
  ["role", "role"],
  ["alignment", "alignment"],
  ["attributes", "attributes"],
  ["documentation", "documentation"],
  ["documents", "documents"],
  ["weight", "weight"],
  ["mrsets", "multiple-response sets"],
  ["varsets", "variable sets"],
]);

/** What documents a variable, by the name of its element. */
const DOCUMENTATION = new Map([
  ["respUnit", "response unit"],
  ["anlysUnit", "analysis unit"],
  ["qstn", "question"],
  ["txt", "description"],
  ["codInstr", "coding"],
]);

/**
 * What a property is called.
 *
 * @param {string} property
 */
export function titleOf(property) {
  return TITLES.get(property) ?? property;
}

/**
 * The properties in the order in which a variable has them.
 *
 * @param {Iterable<string>} properties
 */
export function inOrder(properties) {
  const order = [...TITLES.keys()];
  return [...properties].sort((a, b) => order.indexOf(a) - order.indexOf(b));
}

/**
 * One entry of a list: what it is found by, and what it says.
 *
 * @typedef {object} Item
 * @property {string} id
 * @property {string | null} key
 * @property {boolean} [isNumber]
 * @property {string} text
 */

/** @param {string | number} value */
function valueText(value) {
  return typeof value === "number" ? String(value) : `'${value}'`;
}

/** @param {{value: string | number, label: string}[]} pairs @returns {Item[]} */
function labelItems(pairs) {
  return pairs.map(({ value, label }) => ({
    id: typeof value + value,
    key: valueText(value),
    isNumber: typeof value === "number",
    text: label,
  }));
}

/** @param {Record<string, string[]>} object @returns {Item[]} */
function attributeItems(object) {
  return Object.entries(object).map(([name, values]) => ({
    id: name,
    key: name,
    text: values.join("\n"),
  }));
}

/** @param {Record<string, string[]>} object @returns {Item[]} */
function documentationItems(object) {
  return attributeItems(object).map((item) => ({
    ...item,
    key: DOCUMENTATION.get(item.id) ?? item.key,
  }));
}

/** @param {string[]} texts @returns {Item[]} */
function documentItems(texts) {
  return texts.map((text) => ({ id: text, key: null, text }));
}

/** @param {{name: string, label: string | null, variables: string[]}[]} sets @returns {Item[]} */
function setItems(sets) {
  return sets.map(({ name, label, variables }) => ({
    id: name,
    key: name,
    text: (label === null ? "" : `${label}\n`) + variables.join(", "),
  }));
}

const LISTS = new Map(
  /** @type {[string, (value: any) => Item[]][]} */ ([
    ["valueLabels", labelItems],
    ["attributes", attributeItems],
    ["documentation", documentationItems],
    ["documents", documentItems],
    ["mrsets", setItems],
    ["varsets", setItems],
  ]),
);

/** @param {{count: number, values: (string | number | null)[]}} missing */
function missingText({ count, values }) {
  if (values.length === 0) return null;
  if (count >= 0) return values.map((value) => valueText(value ?? "")).join(", ");
  const [lowest, highest, ...single] = values;
  const range = `${lowest ?? "lowest"} to ${highest ?? "highest"}`;
  return [range, ...single].join(", ");
}

/** @param {{type: string, width: number, decimals: number} | null} format */
function formatText(format) {
  if (format === null) return null;
  const { type, width, decimals } = format;
  return `${type}${width === 0 ? "" : width}${decimals === 0 ? "" : `.${decimals}`}`;
}

const TEXTS = new Map(
  /** @type {[string, (value: any) => string | null][]} */ ([
    ["type", (type) => (type === 0 ? "number" : `string of ${type}`)],
    ["missing", missingText],
    ["print", formatText],
    ["write", formatText],
    ["columnWidth", (width) => (width === 0 ? null : String(width))],
  ]),
);

/** @param {string} property @param {any} value */
function textOf(property, value) {
  if (value === null || value === undefined) return null;
  const text = TEXTS.get(property);
  if (text !== undefined) return text(value);
  return typeof value === "string" ? value : JSON.stringify(value);
}

/** @param {string | null} before @param {string | null} after @returns {State} */
function stateOf(before, after) {
  if (before === after) return "same";
  if (before === null) return "added";
  return after === null ? "removed" : "changed";
}

/**
 * The rows of both lists, in the order of the new one; what was removed stands behind what stood
 * before it.
 *
 * @param {Item[]} before
 * @param {Item[]} after
 */
function listRows(before, after) {
  const old = new Map(before.map((item) => [item.id, item]));
  const isKept = new Set(after.map((item) => item.id));
  /** @type {Row[]} */
  const rows = [];
  let next = 0;
  const passRemoved = () => {
    for (; next < before.length && !isKept.has(before[next].id); ++next) {
      const { key, isNumber = false, text } = before[next];
      rows.push({ key, isNumber, before: text, after: null, state: "removed" });
    }
  };
  passRemoved();
  for (const { id, key, isNumber = false, text } of after) {
    const was = old.get(id)?.text ?? null;
    rows.push({ key, isNumber, before: was, after: text, state: stateOf(was, text) });
    if (was === null) continue;
    ++next;
    passRemoved();
  }
  return rows;
}

/** @param {Item[]} before @param {Item[]} after */
function isReordered(before, after) {
  const old = new Set(before.map((item) => item.id));
  const now = new Set(after.map((item) => item.id));
  const kept = before.filter((item) => now.has(item.id));
  return after.filter((item) => old.has(item.id)).some((item, at) => item.id !== kept[at]?.id);
}

/**
 * Compares the values that a property had and has.
 *
 * @param {string} property
 * @param {any} before
 * @param {any} after
 * @returns {Comparison}
 */
export function compare(property, before, after) {
  const title = titleOf(property);
  const itemsOf = LISTS.get(property);
  if (itemsOf !== undefined) {
    const old = itemsOf(before);
    const now = itemsOf(after);
    const reordered = isReordered(old, now);
    return { title, isList: true, isReordered: reordered, rows: listRows(old, now) };
  }
  const was = textOf(property, before);
  const is = textOf(property, after);
  const row = { key: null, isNumber: false, before: was, after: is, state: stateOf(was, is) };
  return { title, isList: false, isReordered: false, rows: [row] };
}

/**
 * Compares all values of some properties. A print and a write format that changed alike are one.
 *
 * @param {string[]} properties
 * @param {Values} before
 * @param {Values} after
 */
export function compareAll(properties, before, after) {
  const all = new Map(
    properties.map((property) => [property, compare(property, before[property], after[property])]),
  );
  const print = all.get("print");
  const write = all.get("write");
  if (print && write && JSON.stringify(print.rows) === JSON.stringify(write.rows)) {
    print.title = "format";
    all.delete("write");
  }
  return [...all.values()];
}
