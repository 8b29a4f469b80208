// The command that the choices in the form make.

/**
 * Properties of variables and items of files, in the order of the form. Those with ways are merged
 * with what the target has, or replace it.
 * @typedef {{keyword: string, title: string, hasWays?: boolean}} Item
 */

/** @type {Item[]} */
export const properties = [
  { keyword: 'VARLABEL', title: 'Variable labels' },
  { keyword: 'VALLABELS', title: 'Value labels', hasWays: true },
  { keyword: 'MISSING', title: 'Missing values' },
  { keyword: 'FORMATS', title: 'Formats' },
  { keyword: 'LEVEL', title: 'Measurement levels' },
  { keyword: 'ROLE', title: 'Roles' },
  { keyword: 'ALIGNMENT', title: 'Alignment' },
  { keyword: 'WIDTH', title: 'Column widths' },
  { keyword: 'ATTRIBUTES', title: 'Questions, notes and attributes', hasWays: true },
];

/** @type {Item[]} */
export const fileItems = [
  { keyword: 'FILELABEL', title: 'File label' },
  { keyword: 'DOCUMENTS', title: 'Documents', hasWays: true },
  { keyword: 'WEIGHT', title: 'Weight' },
  { keyword: 'MRSETS', title: 'Multiple-response sets', hasWays: true },
  { keyword: 'VARSETS', title: 'Variable sets', hasWays: true },
  { keyword: 'ATTRIBUTES', title: 'Attributes of the file', hasWays: true },
];

/**
 * What is chosen in the form.
 * @typedef {object} Choices
 * @property {string | null} source the name of the source; null for the working file itself
 * @property {'all' | 'list' | 'onto'} variables all of the same names, some of them, or one onto others
 * @property {string} list the names, for 'list'
 * @property {string} from the one variable, for 'onto'
 * @property {string} onto the others
 * @property {boolean} addsVariables
 * @property {Record<string, Way>} properties by keyword; what is not there is left alone
 * @property {Record<string, Way>} fileItems
 *
 * @typedef {'merge' | 'replace'} Way
 */

/** @param {string} text */
export function quoted(text) {
  return `'${text.replaceAll("'", "''")}'`;
}

/**
 * A variable's name as a command has it.
 * @param {string} name
 */
function nameIn(name) {
  const isPlain = /^[A-Za-z@][\w.@#$]*$/.test(name) && !/^(all|to|by|with)$/i.test(name);
  return isPlain ? name : quoted(name);
}

/**
 * @param {string} subcommand
 * @param {Item[]} items
 * @param {Record<string, Way>} chosen
 */
function selection(subcommand, items, chosen) {
  const keywords = items
    .filter(({ keyword }) => keyword in chosen)
    .map(({ keyword, hasWays }) =>
      hasWays ? `${keyword}=${(chosen[keyword] ?? 'replace').toUpperCase()}` : keyword);
  return [`/${subcommand}`, ...keywords].join(' ');
}

/** @param {Choices} choices */
function tail({ properties: chosen, fileItems: ofFile }) {
  const isAll = properties.every(({ keyword }) => chosen[keyword] === 'replace');
  return [
    selection('FILEINFO', fileItems, ofFile),
    ...(isAll ? [] : [selection('VARINFO', properties, chosen)]),
  ];
}

/**
 * The command, a subcommand on each line.
 * @param {Choices} choices
 */
export function commandOf(choices) {
  const { source, variables, list, from, onto, addsVariables } = choices;
  const lines = [`FROM ${source === null ? '*' : quoted(source)}`];
  if (variables === 'list') lines.push(`/SOURCE VARIABLES=${list.trim()}`);
  if (variables === 'onto') {
    lines.push(`/SOURCE VARIABLES=${from.trim()}`, `/TARGET VARIABLES=${onto.trim()}`);
  }
  if (addsVariables) lines.push('/NEWVARS');
  return [...lines, ...tail(choices)].join('\n  ') + '.\n';
}

/**
 * A command for each pair of variables with other names.
 * @param {Choices} choices
 * @param {{old: string, new: string}[]} pairs
 */
export function commandsOfPairs(choices, pairs) {
  const rest = tail({ ...choices, fileItems: {} }).join(' ');
  return pairs
    .map((pair) => `FROM ${quoted(choices.source ?? '')} /SOURCE VARIABLES=${nameIn(pair.old)} ` +
      `/TARGET VARIABLES=${nameIn(pair.new)} ${rest}.\n`)
    .join('');
}
