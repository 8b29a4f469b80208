// Where the page on a server has its parts: in files beside it.

/** The program, compiled. */
export async function compileProgram() {
  const response = await fetch(new URL('applydic.wasm', document.baseURI));
  if (!response.ok) throw new Error('applydic.wasm is missing beside this page');
  return WebAssembly.compile(await response.arrayBuffer());
}

export function startWorker() {
  return new Worker(new URL('worker.js', document.baseURI));
}
