// The loader that emscripten writes.
import type { System } from './system.js';

export interface Runtime {
  /** Runs the program, once, and returns its exit status. */
  callMain(args: string[]): number;
}

export default function createRuntime(module: {
  system: System;
  thisProgram: string;
  instantiateWasm(
    imports: WebAssembly.Imports,
    use: (instance: WebAssembly.Instance) => void): object;
  quit(status: number, toThrow: unknown): void;
}): Promise<Runtime>;
