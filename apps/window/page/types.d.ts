// What the server tells, in the words of drawing files.
export type Point = [number, number];

export interface Entity {
  id: string;
  type: string;
  construction?: boolean;
  fixed?: boolean;
  block?: string;
  start?: Point; end?: Point;
  centre?: Point; radius?: number; start_angle?: number; end_angle?: number;
  major_axis?: Point; ratio?: number; start_param?: number; end_param?: number;
  degree?: number; periodic?: boolean; control?: Point[]; knots?: number[]; weights?: number[];
  position?: Point; rotation?: number; height?: number; text?: string;
  point?: Point; direction?: Point;
  vertices?: Point[]; bulges?: number[]; closed?: boolean;
}

export interface Ref { entity: string; point: string; }

export interface Constraint {
  id: string;
  type: string;
  refs: Ref[];
  value?: number;
  text?: string;
  name?: string;
  formula?: string;
  driving?: boolean;
  active?: boolean;
  members?: string[];
}

export interface Parameter { name: string; formula: string; value: number; }

export interface DrawingData { unit: string; entities: Entity[]; constraints: Constraint[]; parameters: Parameter[]; }

export interface Change {
  entities: Entity[]; erased: string[];
  constraints: Constraint[]; deleted: string[];
  parameters?: Parameter[];
}

export interface Fate { id: string; fate: string; reason: string; moves?: { from: string; to: string }[]; }
export interface EntityFate {
  id: string; fate: string; movedBy?: number;
  sizes?: { size: string; before: number; after: number }[];
}

export interface Result {
  text: string; done: boolean; error: string; remarks: string[];
  constraints: Fate[]; entities: EntityFate[];
  shortfall?: { by: number; heldBackBy: string[] };
  change?: Change;
  number: number; seconds?: number;  // no glimpse has any
  isGlimpse?: boolean;  // it tells what moves, and a trial the rest
  unsaved?: boolean; canUndo?: boolean; canRedo?: boolean;
}

export interface State {
  number: number; name: string; file: string;
  drawings: number;  // counts up when another drawing takes the place of this one
  dropped: boolean; own: string;  // it was dropped; the file that was opened
  readOnly: boolean; takesSaves: boolean; unsaved: boolean; takenUp: boolean;
  behind: string;  // who has written the file since it was read, in words; empty: nobody
  canUndo: boolean; canRedo: boolean;
  forms: string[];  // in which it can be saved, by their endings: that in which it came first
  names?: boolean;  // a page that stands alone: those of entities are shown
  log: { text: string; error: string; remarks: string[] }[];
  drawing: DrawingData;
}

export interface Motion { kind: string; direction?: Point; centre?: Point; end?: string; }
export interface Freedom {
  number: number; error?: string;
  freedom: number;
  conflicts: string[][]; redundant: string[]; broken: { id: string; by: number }[];
  entities: Record<string, { words: string; free: boolean; motions: Motion[] }>;
}

export interface Kind {
  name: string; label: string; sign: string; icon: string; takes: string; mark: string;
  coordinate: number; isDimension: boolean; isAngle: boolean;
}
export interface Verb { name: string; usage: string; example: string; purpose: string; }
export interface Language { kinds: Kind[]; verbs: Verb[]; glyphs: string; }

// What a report holds.
export interface Told { id: string; fate: string; class: string; why: string; }
export interface Step {
  text: string; error: string; remarks: string[];
  constraints: Told[]; entities: Told[];
  change?: Change;
}
export interface StepsData {
  language: { kinds: Kind[] };
  before: DrawingData;
  whole: { constraints: Told[]; entities: Told[] };
  steps: Step[];
  freedom: (Freedom | null)[];
}

export interface View { scale: number; x: number; y: number; width: number; height: number; }

// Younger than the checker's own list of what browsers have.
declare global {
  class DecompressionStream { constructor(format: string); readable: ReadableStream; writable: WritableStream; }
  interface CanvasRenderingContext2D {
    roundRect(x: number, y: number, w: number, h: number, radius: number): void;
  }
}
