"""The drawings of Quenlin's icons by image key: SVG elements on a grid of 24 units.

{ink}, {accent}, {tint} and {paper} are the palette's colours (makeicons). Lines are ink unless an
element says otherwise.
"""

PAGE = '<path fill="{tint}" d="M6.75 2.25h7.5l4.5 4.5v13.5a1.5 1.5 0 0 1-1.5 1.5H6.75a1.5 1.5 0 0 1' \
       '-1.5-1.5V3.75a1.5 1.5 0 0 1 1.5-1.5z"/>\n<path d="M14.25 2.25v4.5h4.5"/>\n'

FOLDER_BACK = "M2.25 6a1.5 1.5 0 0 1 1.5-1.5h4.5l2.25 2.25h8.25a1.5 1.5 0 0 1 1.5 1.5"

DRIVE = '<rect x="2.25" y="{top}" width="19.5" height="7.5" rx="1.5" fill="{{tint}}"/>\n' \
        '<path d="M5.25 {led}h4.5"/>\n' \
        '<circle cx="17.25" cy="{led}" r="1.25" fill="{{accent}}" stroke="none"/>\n'


def note(x, y, stem, flag=True, size=1.0):
    """A quaver whose head stands at x, y; `stem` is its height in units."""
    head_x, head_y = 2.3 * size, 1.8 * size
    line = x + head_x - 0.75
    parts = [f'<ellipse cx="{x:g}" cy="{y:g}" rx="{head_x:g}" ry="{head_y:g}"'
             ' fill="{accent}" stroke="none"/>']
    path = f"M{line:g} {y:g}V{y - stem:g}"
    if flag:
        path += f"c.2 {1.6 * size:g} {2.9 * size:g} {1.7 * size:g} {2.9 * size:g} {4.1 * size:g}"
    parts.append(f'<path stroke="{{accent}}" d="{path}"/>')
    return "\n".join(parts) + "\n"


def badge(sign):
    """A round badge at the lower right with `sign` on it."""
    return ('<circle cx="17.25" cy="17.25" r="5.25" fill="{accent}" stroke="none"/>\n'
            f'<path stroke="{{paper}}" d="{sign}"/>\n')


LIST_LINES = '<path d="M3.75 5.25h16.5M3.75 9.75h12M3.75 14.25h5.25M3.75 18.75h5.25"/>\n'

DRAWINGS = {
    # --- the tree and the list ---
    "MP3": PAGE + note(10.3, 17.5, 8.1, size=1.1),
    "M3U": PAGE + '<path d="M11.25 11.25h4.5M11.25 14.25h4.5M11.25 17.25h4.5"/>\n'
                  '<path stroke="{accent}" stroke-width="2" d="M8.25 11.25h.01M8.25 14.25h.01M8.25 17.25h.01"/>',
    "closed": '<path fill="{tint}" stroke="{accent}" d="M2.25 6a1.5 1.5 0 0 1 1.5-1.5h4.5l2.25 2.25'
              'h9.75a1.5 1.5 0 0 1 1.5 1.5V18a1.5 1.5 0 0 1-1.5 1.5H3.75a1.5 1.5 0 0 1-1.5-1.5z"/>\n'
              '<path stroke="{accent}" d="M2.25 9.75h19.5"/>',
    "open": '<path stroke="{accent}" d="M20.25 9.75v-1.5a1.5 1.5 0 0 0-1.5-1.5H10.5L8.25 4.5h-4.5'
            'A1.5 1.5 0 0 0 2.25 6v12a1.5 1.5 0 0 0 1.5 1.5"/>\n'
            '<path fill="{tint}" stroke="{accent}" d="M3.75 19.5l2.6-8.65a1.5 1.5 0 0 1 1.45-1.1h13.2'
            'a1 1 0 0 1 .95 1.3l-2.3 7.4a1.5 1.5 0 0 1-1.45 1.05z"/>',
    "Warning": '<path fill="{tint}" d="M10.7 3.75L2.5 18a1.5 1.5 0 0 0 1.3 2.25h16.4A1.5 1.5 0 0 0 '
               '21.5 18L13.3 3.75a1.5 1.5 0 0 0-2.6 0z"/>\n'
               '<path stroke="{accent}" stroke-width="2" d="M12 9v4.5M12 17.1v.01"/>',
    # --- a box that warns; the same in light and dark windows ---
    "Exclamation": '<path fill="#f2a31b" stroke="#f2a31b" stroke-width="3" d="M12 4.5L21 20.25H3z"/>\n'
                   '<path stroke="#3a2600" stroke-width="2" d="M12 9.75v4.5M12 17.6v.01"/>',
    # --- the folder tree of the preferences ---
    "desk": '<rect x="2.25" y="3.75" width="19.5" height="16.5" rx="1.5" fill="{tint}"/>\n'
            '<path d="M2.25 16.5h19.5"/>\n'
            '<path stroke="{accent}" stroke-width="2" d="M6.25 8h1M6.25 12h1M11.25 8h1"/>',
    "desktop": '<rect x="2.25" y="3.75" width="19.5" height="12.75" rx="1.5" fill="{tint}"/>\n'
               '<path stroke="{accent}" d="M12 16.5v3.75M7.5 20.25h9"/>',
    "hard": DRIVE.format(top="8.25", led="12"),
    "net": DRIVE.format(top="3.75", led="7.5") +
           '<path stroke="{accent}" d="M12 11.25v5.25M3.75 18.75h5.25M15 18.75h5.25"/>\n'
           '<circle cx="12" cy="18.75" r="2.25" fill="{accent}" stroke="{accent}"/>',
    "floppy": '<path fill="{tint}" d="M5.25 3.75h11.6l3.4 3.4v11.6a1.5 1.5 0 0 1-1.5 1.5H5.25a1.5 1.5'
              ' 0 0 1-1.5-1.5V5.25a1.5 1.5 0 0 1 1.5-1.5z"/>\n'
              '<path d="M8.25 3.75v4.5h6v-4.5"/>\n'
              '<path stroke="{accent}" d="M7.5 20.25v-6a.75.75 0 0 1 .75-.75h7.5a.75.75 0 0 1 .75.75v6"/>',
    "cdrom": '<circle cx="12" cy="12" r="9" fill="{tint}"/>\n'
             '<circle cx="12" cy="12" r="2.75" fill="{paper}" stroke="{accent}"/>\n'
             '<path stroke="{accent}" d="M6.2 12A5.8 5.8 0 0 1 12 6.2"/>',
    # --- commands ---
    "FileInfo": PAGE + badge("M17.25 17.1v3M17.25 14.4v.01"),
    "DuplicateMP3": '<path d="M6.75 18.75h-1.5a1.5 1.5 0 0 1-1.5-1.5V3.75a1.5 1.5 0 0 1 1.5-1.5h7.5'
                    'a1.5 1.5 0 0 1 1.5 1.5"/>\n'
                    '<rect x="8.25" y="6.75" width="12" height="15" rx="1.5" fill="{tint}"/>\n'
                    + note(13.1, 18.1, 8.1, size=1.1),
    "Rename": '<path fill="{tint}" stroke="none" d="M14.25 6.75H3.75a1.5 1.5 0 0 0-1.5 1.5v7.5a1.5 1.5 0'
              ' 0 0 1.5 1.5h10.5z"/>\n'
              '<path d="M12 6.75H3.75a1.5 1.5 0 0 0-1.5 1.5v7.5a1.5 1.5 0 0 0 1.5 1.5H12M18 6.75h2.25'
              'a1.5 1.5 0 0 1 1.5 1.5v7.5a1.5 1.5 0 0 1-1.5 1.5H18M6 11.25h4.5"/>\n'
              '<path stroke="{accent}" d="M14.25 4.5v15M12 2.25c1.4 0 2.25.9 2.25 2.25 0-1.35.85-2.25 2.25'
              '-2.25M12 21.75c1.4 0 2.25-.9 2.25-2.25 0 1.35.85 2.25 2.25 2.25"/>',
    "Export": '<path fill="{tint}" d="M8.25 9.75h-3a1.5 1.5 0 0 0-1.5 1.5v8.25a1.5 1.5 0 0 0 1.5 1.5'
              'h13.5a1.5 1.5 0 0 0 1.5-1.5v-8.25a1.5 1.5 0 0 0-1.5-1.5h-3"/>\n'
              '<path stroke="{accent}" d="M12 15.75v-13M7.9 6.75L12 2.65l4.1 4.1"/>',
    "Lyrics": '<path d="M2.25 5.25h9M2.25 18.75h8.25"/>\n'
              '<path stroke="{accent}" stroke-width="3" d="M3 12h8.25"/>\n'
              + note(16.3, 17.4, 13.4, size=1.35),
    "Controls": '<rect x="2.25" y="3.75" width="19.5" height="16.5" rx="2.25" fill="{tint}"/>\n'
                '<path stroke="none" fill="{accent}" d="M9.4 6.4v5.7a.6.6 0 0 0 .9.5l5-2.85a.6.6 0 0 0 0-1'
                'l-5-2.85a.6.6 0 0 0-.9.5z"/>\n'
                '<path d="M6 15.75h12"/>\n'
                '<circle cx="10.5" cy="15.75" r="1.9" fill="{ink}" stroke="none"/>',
    "Search": '<circle cx="10.5" cy="10.5" r="7.25" fill="{tint}"/>\n'
              '<path stroke="{accent}" stroke-width="2.25" d="M16.2 16.2l4.6 4.6"/>',
    "Exit": '<path fill="{tint}" d="M14.25 3.75h-9a1.5 1.5 0 0 0-1.5 1.5v13.5a1.5 1.5 0 0 0 1.5 1.5h9z"'
            ' stroke="none"/>\n'
            '<path d="M14.25 6.75v-1.5a1.5 1.5 0 0 0-1.5-1.5h-7.5a1.5 1.5 0 0 0-1.5 1.5v13.5a1.5 1.5 0 0 0 '
            '1.5 1.5h7.5a1.5 1.5 0 0 0 1.5-1.5v-3"/>\n'
            '<path stroke="{accent}" d="M9.75 11.25h11.25M17.25 7.5L21 11.25l-3.75 3.75"/>',
    "TechSupport": '<circle cx="12" cy="12" r="9.25" fill="{tint}"/>\n'
                   '<path stroke="{accent}" stroke-width="3.5" stroke-linecap="butt" '
                   'd="M5.5 5.5l3.9 3.9M18.5 5.5l-3.9 3.9M5.5 18.5l3.9-3.9M18.5 18.5l-3.9-3.9"/>\n'
                   '<circle cx="12" cy="12" r="9.25"/>\n'
                   '<circle cx="12" cy="12" r="3.75" fill="{paper}"/>',
    "VerCheck": '<path d="M20.9 10.2A9 9 0 0 0 4.3 7.5M3.1 13.8a9 9 0 0 0 16.6 2.7"/>\n'
                '<path d="M4 3v4.5h4.5M20 21v-4.5h-4.5"/>\n'
                '<path stroke="{accent}" stroke-width="2" d="M8.6 12.3l2.4 2.4 4.4-5"/>',
    "Tip": '<path fill="{tint}" d="M9 17.25c0-2-.6-2.9-1.6-3.9a6.75 6.75 0 1 1 9.2 0c-1 1-1.6 1.9-1.6 '
           '3.9z"/>\n'
           '<path stroke="{accent}" d="M9.75 20.25h4.5M12 17.25v-5.5M9.9 10l2.1 1.75L14.1 10"/>',
    "TreeView": '<path d="M5.25 8.25v10.5h6M5.25 12.75h6"/>\n'
                '<rect x="2.25" y="2.25" width="9" height="6" rx="1.5" fill="{tint}" stroke="{accent}"/>\n'
                '<path stroke="{accent}" stroke-width="3" d="M15 12.75h5.25M15 18.75h5.25"/>',
    "PlayList": '<path d="M3.75 5.25h16.5M3.75 9.75h16.5M3.75 14.25h6M3.75 18.75h6"/>\n'
                '<path fill="{tint}" stroke="{accent}" d="M13.5 13.6v7a.6.6 0 0 0 .9.5l5.9-3.5a.6.6 0 0 0 '
                '0-1l-5.9-3.5a.6.6 0 0 0-.9.5z"/>',
    "Add": LIST_LINES + badge("M17.25 14.25v6M14.25 17.25h6"),
    "Remove": LIST_LINES + badge("M14.25 17.25h6"),
    "Help": '<circle cx="12" cy="12" r="9.25" fill="{tint}"/>\n'
            '<path stroke="{accent}" stroke-width="2" d="M9.2 9.6a2.85 2.85 0 1 1 4.35 2.4c-1 .65-1.55 '
            '1.2-1.55 2.25M12 17.4v.01"/>',
    # --- the player ---
    "Play": '<path fill="{tint}" stroke="{accent}" d="M6.75 5v14a.9.9 0 0 0 1.4.75l11-7a.9.9 0 0 0 0-1.5'
            'l-11-7A.9.9 0 0 0 6.75 5z"/>',
    "Pause": '<rect x="5.25" y="5.25" width="4.5" height="13.5" rx="1" fill="{tint}" stroke="{accent}"/>\n'
             '<rect x="14.25" y="5.25" width="4.5" height="13.5" rx="1" fill="{tint}" stroke="{accent}"/>',
    "Stop": '<rect x="5.25" y="5.25" width="13.5" height="13.5" rx="1.5" fill="{tint}" stroke="{accent}"/>',
    "Previous": '<path fill="{tint}" stroke="{accent}" d="M18.75 5.6v12.8a.9.9 0 0 1-1.4.75l-9.6-6.4'
                'a.9.9 0 0 1 0-1.5l9.6-6.4a.9.9 0 0 1 1.4.75zM5.25 5.25v13.5"/>',
    "Next": '<path fill="{tint}" stroke="{accent}" d="M5.25 5.6v12.8a.9.9 0 0 0 1.4.75l9.6-6.4a.9.9 0 0 0 '
            '0-1.5l-9.6-6.4a.9.9 0 0 0-1.4.75zM18.75 5.25v13.5"/>',
    "Shuffle": '<path d="M2.25 17.25h3.2c1.5 0 2.9-.8 3.7-2M2.25 6.75h3.2c1.5 0 2.9.8 3.7 2"/>\n'
               '<path stroke="{accent}" d="M21 6.75h-3.2c-1.7 0-3.2 1-4 2.4l-3.1 5.7M21 17.25h-3.2'
               'c-1.5 0-2.9-.8-3.7-2M18 3.75l3 3-3 3M18 14.25l3 3-3 3"/>',
    # --- the lyrics' times ---
    "Save": '<path fill="{tint}" d="M5.25 3.75h11.6l3.4 3.4v11.6a1.5 1.5 0 0 1-1.5 1.5H5.25a1.5 1.5 0 0 1'
            '-1.5-1.5V5.25a1.5 1.5 0 0 1 1.5-1.5z"/>\n'
            '<path d="M8.25 3.75v4.5h6v-4.5"/>\n'
            '<path stroke="{accent}" stroke-width="2" d="M8.3 14.6l2.6 2.6 4.8-5.2"/>',
    "Test": '<circle cx="12" cy="13.5" r="8" fill="{tint}"/>\n'
            '<path d="M9.75 2.25h4.5M12 2.25v3M18 6.6l1.4-1.4"/>\n'
            '<path stroke="{accent}" stroke-width="2" d="M12 13.5l3-3.4"/>',
    # --- small windows ---
    "Close": '<path stroke-width="2.25" d="M6 6l12 12M18 6L6 18"/>',
    "Forum": '<path d="M17.25 7.5V5.25a1.5 1.5 0 0 0-1.5-1.5h-12a1.5 1.5 0 0 0-1.5 1.5v7.5a1.5 1.5 0 0 0 '
             '1.5 1.5v3.5l3.2-2.9"/>\n'
             '<path fill="{tint}" stroke="{accent}" d="M9 9.75h11.25a1.5 1.5 0 0 1 1.5 1.5v5.25a1.5 1.5 0 0 '
             '1-1.5 1.5v3.25L16.5 18H9a1.5 1.5 0 0 1-1.5-1.5v-5.25A1.5 1.5 0 0 1 9 9.75z"/>',
    "Tutorial": '<path fill="{tint}" d="M12 6.75C9.9 5 6.9 4.5 2.25 4.5v13.5c4.65 0 7.65.5 9.75 2.25 '
                '2.1-1.75 5.1-2.25 9.75-2.25V4.5C17.1 4.5 14.1 5 12 6.75z"/>\n'
                '<path stroke="{accent}" d="M12 6.75v13.5M15.4 9.4c1-.4 1.9-.6 3-.7M15.4 13.2c1-.4 1.9-.6 3-.7"/>',
    "Mail": '<rect x="2.25" y="5.25" width="19.5" height="13.5" rx="1.5" fill="{tint}"/>\n'
            '<path stroke="{accent}" d="M2.9 6.4l9.1 7.1 9.1-7.1"/>',
    # --- kinds of change in the history ---
    "BugFix": '<path fill="{tint}" d="M7.5 11.25a4.5 4.5 0 0 1 9 0v3.75a4.5 4.5 0 0 1-9 0z"/>\n'
              '<path d="M9 7.1L7.2 4.2M15 7.1l1.8-2.9M7.5 12.75H3M16.5 12.75H21M7.7 9.6L4.2 7.9M16.3 9.6'
              'l3.5-1.7M8 16.8l-3.8 2.1M16 16.8l3.8 2.1"/>\n'
              '<path stroke="{accent}" d="M12 11.25v7.5"/>',
    "New": '<path fill="{tint}" stroke="{accent}" d="M12 2.75l2.75 5.9 6.4.8-4.7 4.45 1.2 6.4L12 17.2l'
           '-5.65 3.1 1.2-6.4-4.7-4.45 6.4-.8z"/>',
    "Changed": '<path fill="{tint}" d="M3.75 20.25l.95-4.6L15.9 4.4a1.9 1.9 0 0 1 2.7 0l1 1a1.9 1.9 0 0 1 '
               '0 2.7L8.35 19.3z"/>\n'
               '<path stroke="{accent}" d="M13.3 7l3.7 3.7M14.25 20.25h6"/>',
    "Removed": '<path fill="{tint}" d="M5.25 6.75l.9 12.15a1.5 1.5 0 0 0 1.5 1.35h8.7a1.5 1.5 0 0 0 1.5-1.35'
               'l.9-12.15"/>\n'
               '<path d="M3 6.75h18M9 6.75V4.5a.75.75 0 0 1 .75-.75h4.5a.75.75 0 0 1 .75.75v2.25"/>\n'
               '<path stroke="{accent}" d="M9.9 10.5l.35 6M14.1 10.5l-.35 6"/>',
}
