// The messages of a run, those of one text together, with what is to be known of them.

import { digits, element, shown } from "./elements.js";
import { levelOf } from "./entries.js";
import { nameList } from "./name-list.js";

/** @typedef {import("./entries.js").MessageKind} MessageKind */
/** @typedef {import("./entries.js").Diagnostic} Diagnostic */
/** @typedef {import("./entries.js").Explanation} Explanation */

/** What messages of a variable begin with. */
const ABOUT = "^1: ";

/**
 * The text of messages without what is another thing in each.
 *
 * @param {MessageKind} kind
 */
export function headingOf({ text, messages }) {
  if (messages.length === 1 && !isOfVariables(text)) return textOfMessage(messages[0]);
  const rest = text.startsWith(ABOUT) ? text.slice(ABOUT.length) : text;
  return rest.replace(/\^[1-9]/g, "…").replace(/\\(.)/g, "$1");
}

/**
 * Whether the messages differ in the name before the colon alone.
 *
 * @param {string} text
 */
function isOfVariables(text) {
  return text.startsWith(ABOUT) && !text.slice(ABOUT.length).includes("^");
}

/** @param {boolean} isError */
export function levelName(isError) {
  return isError ? "Error" : "Warning";
}

/**
 * @param {MessageKind[]} kinds
 * @param {object} how
 * @param {Record<string, Explanation>} how.explanations
 * @param {(name: string) => (() => void) | null} how.actionOf what a click on a variable does
 * @param {boolean} how.isWhole show all of long lists at once
 */
export function messageList(kinds, how) {
  return element("ul", { class: "messages", role: "list" }, ...kinds.map((kind) => itemOf(kind, how)));
}

/** @param {MessageKind} kind @param {Parameters<typeof messageList>[1]} how */
function itemOf(kind, how) {
  const { isError, text, messages } = kind;
  const explanation = how.explanations[text];
  const item = element(
    "li",
    { class: `message ${levelOf(kind)}` },
    element(
      "h3",
      {},
      element("span", { class: "level" }, levelName(isError)),
      shown(headingOf(kind)),
      messages.length > 1 ? element("span", { class: "count" }, digits(messages.length)) : null,
    ),
  );
  if (isOfVariables(text)) {
    const names = messages.map((message) => message.arguments[0]);
    item.append(nameList(names, { ...how, labelOf: () => "" }));
  } else if (messages.length > 1) {
    item.append(element("ul", { class: "told-one-by-one" }, ...messages.map(told)));
  }
  for (const advice of new Set(messages.map((message) => message.advice ?? ""))) {
    if (advice !== "") item.append(element("p", { class: "advice" }, shown(advice)));
  }
  if (explanation !== undefined) item.append(explained(explanation));
  return item;
}

/** @param {Diagnostic} diagnostic */
function told(diagnostic) {
  return element("li", {}, shown(textOfMessage(diagnostic)));
}

/**
 * The message with its place in the commands, if it has one and does not say so itself.
 *
 * @param {Diagnostic} diagnostic
 */
function textOfMessage({ message, line, column }) {
  const isTold = !line || message.includes(`line ${line}`);
  return isTold ? message : `${message} (line ${line}, column ${column})`;
}

/** @param {Explanation} explanation */
function explained({ what, why, action }) {
  const parts = /** @type {[string, string][]} */ ([
    ["What happened", what],
    ["Why", why],
    ["What to do", action],
  ]);
  return element(
    "dl",
    { class: "explanation" },
    ...parts
      .filter(([, text]) => text !== "")
      .map(([head, text]) =>
        element("div", {}, element("dt", {}, head), element("dd", {}, shown(text))),
      ),
  );
}
