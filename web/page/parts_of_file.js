// Where the single file has its parts: in elements of its own.

/** @param {string} id */
function textOf(id) {
  return document.getElementById(id)?.textContent ?? '';
}

/**
 * What an element holds, packed.
 * @param {string} id
 */
function unpacked(id) {
  const packed = Uint8Array.from(atob(textOf(id)), (c) => c.charCodeAt(0));
  return new Response(new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip')));
}

/** The program, unpacked and compiled. */
export async function compileProgram() {
  return WebAssembly.compile(await unpacked('program').arrayBuffer());
}

const licenses = /** @type {HTMLElement} */ (document.getElementById('show-licenses'));
licenses.addEventListener('click', async () => {
  const shown = document.createElement('pre');
  shown.textContent = await unpacked('licenses').text();
  licenses.replaceWith(shown);
});

export function startWorker() {
  return new Worker(URL.createObjectURL(new Blob([textOf('worker')], { type: 'text/javascript' })));
}
