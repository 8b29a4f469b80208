// Makes elements of a page. Text comes into the page here alone, and only as text: nothing that a
// codebook says can become markup.

/**
 * What a text must not do to the line it stands in: control characters besides tab and line feed,
 * line and paragraph separators, and characters that change the direction of writing.
 */
const HIDDEN = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u2028\u2029\u202a-\u202e\u2066-\u2069]/;

/**
 * Makes an element with attributes. A child that is a string becomes text; null is left out.
 *
 * @param {string} tag
 * @param {Record<string, string | number | boolean | null>} [attributes] null and false: absent
 * @param {...(Node | string | null)} children
 * @returns {HTMLElement}
 */
export function element(tag, attributes = {}, ...children) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === null || value === false) continue;
    made.setAttribute(name, value === true ? "" : String(value));
  }
  for (const child of children) {
    if (child !== null) made.append(child);
  }
  return made;
}

/**
 * A button that does something.
 *
 * @param {Record<string, string | number | boolean | null>} attributes
 * @param {() => void} action
 * @param {...(Node | string | null)} children
 */
export function button(attributes, action, ...children) {
  const made = /** @type {HTMLButtonElement} */ (
    element("button", { type: "button", ...attributes }, ...children)
  );
  made.addEventListener("click", action);
  return made;
}

/**
 * A text of a codebook or of a command: as it stands, apart from the text around it in its
 * direction, with hidden characters spelled out.
 *
 * @param {string} text
 */
export function shown(text) {
  const made = element("bdi");
  let rest = text;
  for (let found = HIDDEN.exec(rest); found !== null; found = HIDDEN.exec(rest)) {
    const code = found[0].charCodeAt(0).toString(16).toUpperCase().padStart(4, "0");
    made.append(rest.slice(0, found.index));
    made.append(element("span", { class: "hidden-character" }, `U+${code}`));
    rest = rest.slice(found.index + 1);
  }
  made.append(rest);
  return made;
}

/**
 * Text for screen readers alone.
 *
 * @param {string} text
 */
export function aside(text) {
  return element("span", { class: "aside" }, text);
}

/**
 * A number for people.
 *
 * @param {number} count
 */
export function digits(count) {
  return count.toLocaleString("en");
}

/**
 * "1 variable", "2 variables".
 *
 * @param {number} count
 * @param {string} one
 * @param {string} [many]
 */
export function counted(count, one, many = `${one}s`) {
  return `${digits(count)} ${count === 1 ? one : many}`;
}

/**
 * The size of a file for people.
 *
 * @param {number} bytes
 */
export function sizeText(bytes) {
  const units = ["bytes", "KB", "MB", "GB"];
  let size = bytes;
  let unit = 0;
  for (; size >= 1000 && unit + 1 < units.length; ++unit) size /= 1000;
  return `${size.toLocaleString("en", { maximumSignificantDigits: 3 })} ${units[unit]}`;
}
