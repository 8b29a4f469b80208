// The variables and messages of a difference, made ready to be searched, filtered and sorted.

/**
 * What a difference is, as `applydic apply --json` and `applydic diff --json` give it. A report
 * adds labels and explanations.
 *
 * @typedef {object} Difference
 * @property {ChangedVariable[]} changed
 * @property {string[]} [file] names of the file-level items that changed
 * @property {{old: Record<string, any>, new: Record<string, any>}} [fileValues]
 * @property {string[]} [added] names of variables, as the next three
 * @property {string[]} [removed]
 * @property {string[]} [notPaired]
 * @property {string[]} [notReached]
 * @property {Diagnostic[]} [diagnostics]
 * @property {Record<string, string>} [labels] of variables by name, where no change tells them
 * @property {Record<string, Explanation>} [explanations] by the text of the diagnostic
 *
 * @typedef {object} ChangedVariable
 * @property {string} variable
 * @property {string[]} properties
 * @property {Record<string, any>} old
 * @property {Record<string, any>} new
 *
 * @typedef {object} Diagnostic
 * @property {number} level
 * @property {string} text with placeholders ^1 to ^9
 * @property {string[]} arguments
 * @property {string} message
 * @property {number | null} [line] of the commands, from 1
 * @property {number | null} [column]
 * @property {string} [advice] what to do about it; may be empty
 *
 * @typedef {object} Explanation
 * @property {string} what happened
 * @property {string} why
 * @property {string} action to take
 */

/**
 * A variable that changed.
 *
 * @typedef {object} Variable
 * @property {number} place in the file's order
 * @property {string} name
 * @property {string} label empty for none
 * @property {ChangedVariable} change
 * @property {MessageKind[]} kinds of the messages that name it
 * @property {Diagnostic[]} messages
 * @property {string | null} text what a search looks in, once one has
 *
 * Messages of one text.
 * @typedef {object} MessageKind
 * @property {string} id
 * @property {boolean} isError
 * @property {string} text
 * @property {Diagnostic[]} messages
 *
 * What is to be shown. An empty set or text leaves nothing out.
 * @typedef {object} Criteria
 * @property {string} search
 * @property {Set<string>} properties
 * @property {Set<string>} messages IDs of kinds, and "error" or "warning" for all of a level
 * @property {"file" | "name" | "changes"} order
 */

/** @returns {Criteria} */
export function noCriteria() {
  return { search: "", properties: new Set(), messages: new Set(), order: "file" };
}

const LOWEST_ERROR = 3;

/** @param {Diagnostic} diagnostic */
export function isError({ level }) {
  return level >= LOWEST_ERROR;
}

/** @param {MessageKind} kind */
export function levelOf(kind) {
  return kind.isError ? "error" : "warning";
}

/**
 * The messages by their texts, errors first.
 *
 * @param {Diagnostic[]} diagnostics
 */
export function messageKinds(diagnostics) {
  /** @type {Map<string, MessageKind>} */
  const kinds = new Map();
  for (const diagnostic of diagnostics) {
    const { text } = diagnostic;
    const known = kinds.get(text);
    if (known !== undefined) {
      known.messages.push(diagnostic);
      continue;
    }
    const id = String(kinds.size + 1);
    kinds.set(text, { id, isError: isError(diagnostic), text, messages: [diagnostic] });
  }
  return [...kinds.values()].sort((a, b) => Number(b.isError) - Number(a.isError));
}

/**
 * @param {Difference} difference
 * @param {MessageKind[]} kinds
 */
export function changedVariables(difference, kinds) {
  const labels = difference.labels ?? {};
  const variables = difference.changed.map(
    (change, place) =>
      /** @type {Variable} */ ({
        place,
        name: change.variable,
        label: ("label" in change.new ? change.new.label : labels[change.variable]) ?? "",
        change,
        kinds: [],
        messages: [],
        text: null,
      }),
  );
  const byName = new Map(variables.map((variable) => [variable.name, variable]));
  for (const kind of kinds) {
    for (const message of kind.messages) {
      for (const variable of new Set(message.arguments.map((name) => byName.get(name)))) {
        if (variable === undefined) continue;
        variable.messages.push(message);
        if (!variable.kinds.includes(kind)) variable.kinds.push(kind);
      }
    }
  }
  return variables;
}

/**
 * Adds what a value says to a text: all that is in it, but not the names of members.
 *
 * @param {any} value
 * @param {string[]} texts
 */
function collectTexts(value, texts) {
  if (value === null || typeof value === "boolean") return;
  if (typeof value !== "object") {
    texts.push(String(value));
  } else {
    for (const part of Object.values(value)) collectTexts(part, texts);
  }
}

/** @param {string} text */
function folded(text) {
  return text.normalize("NFC").toLowerCase();
}

/**
 * What a search looks in, for a value or several.
 *
 * @param {...any} values
 */
export function searchText(...values) {
  /** @type {string[]} */
  const texts = [];
  collectTexts(values, texts);
  return folded(texts.join("\n"));
}

/** @param {Variable} variable */
export function textOfVariable(variable) {
  if (variable.text === null) {
    const { change, label, messages } = variable;
    const told = messages.map(({ message }) => message);
    // The names of attributes and of what documents a variable are members.
    const members = [change.old, change.new].flatMap((side) =>
      Object.keys(side.attributes ?? {}),
    );
    variable.text = searchText(variable.name, label, change.old, change.new, members, told);
  }
  return variable.text;
}

/**
 * The words of a search; each of them must be found.
 *
 * @param {string} search
 */
export function wordsOf(search) {
  return folded(search).split(/\s+/u).filter(Boolean);
}

/**
 * @param {string} text from searchText
 * @param {string[]} words
 */
export function hasWords(text, words) {
  return words.every((word) => text.includes(word));
}

/**
 * @param {Criteria} criteria
 * @param {MessageKind} kind
 */
export function isChosen({ messages }, kind) {
  return messages.size === 0 || messages.has(kind.id) || messages.has(levelOf(kind));
}

/** @param {Criteria} criteria @param {Variable} variable */
function isOfProperties({ properties }, variable) {
  return properties.size === 0 || variable.change.properties.some((name) => properties.has(name));
}

/** @param {Criteria} criteria @param {Variable} variable */
function isOfMessages(criteria, variable) {
  return (
    criteria.messages.size === 0 || variable.kinds.some((kind) => isChosen(criteria, kind))
  );
}

const byName = new Intl.Collator("en", { numeric: true }).compare;

/** @type {Map<Variable[], Variable[]>} */
const inOrderOfNames = new Map();

/**
 * The variables in an order; that of names is made once.
 *
 * @param {Variable[]} variables
 * @param {Criteria["order"]} order
 */
function ordered(variables, order) {
  if (order === "changes") {
    return [...variables].sort(
      (a, b) => b.change.properties.length - a.change.properties.length || a.place - b.place,
    );
  }
  if (order === "file") return variables;
  const known = inOrderOfNames.get(variables);
  if (known !== undefined) return known;
  const made = [...variables].sort((a, b) => byName(a.name, b.name) || a.place - b.place);
  inOrderOfNames.set(variables, made);
  return made;
}

/**
 * The variables that meet the criteria, in their order; and how many would with each property or
 * message kind alone: how many the search and the other filter leave.
 *
 * @param {Variable[]} variables
 * @param {Criteria} criteria
 */
export function select(variables, criteria) {
  const words = wordsOf(criteria.search);
  /** @type {Map<string, number>} */
  const ofProperty = new Map();
  const chosen = ordered(variables, criteria.order).filter((variable) => {
    if (words.length > 0 && !hasWords(textOfVariable(variable), words)) return false;
    if (!isOfMessages(criteria, variable)) return false;
    for (const property of variable.change.properties) {
      ofProperty.set(property, (ofProperty.get(property) ?? 0) + 1);
    }
    return isOfProperties(criteria, variable);
  });
  return { chosen, ofProperty };
}
