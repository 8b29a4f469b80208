// What the build puts in the place of a module.

// parts_of_file.js or parts_of_folder.js
declare module 'page-parts' {
  export function compileProgram(): Promise<WebAssembly.Module>;
  export function startWorker(): Worker;
}

// the text of a file
declare module '*.xml' {
  const text: string;
  export default text;
}
