-- The catalogue as it ships. The program never changes its structure. It names no function and no
-- collation that the stock sqlite3 tool lacks; the program gives UPPER, LIKE and "=" their Unicode
-- letter case when it runs a statement (catalogue/sql/statementtext.h).

-- One row per catalogued file, and one more for each duplicate of its entry. An INSERT gives all
-- ten columns by position: there must be no further column.
CREATE TABLE MP3s (
    Title TEXT,
    Artist TEXT,
    Album TEXT,
    Year TEXT,
    Comment TEXT,
    Genre TEXT,
    Lyrics TEXT,
    Path TEXT,
    Disk_Label TEXT,
    Duplicated INTEGER
);

-- A file is found by its exact path. Not unique: duplicates share the path.
CREATE INDEX MP3sByPath ON MP3s (Path);

CREATE TABLE Genre (
    ID INTEGER PRIMARY KEY,
    Name TEXT
);

CREATE TABLE Lists (
    LIST_Name TEXT,
    LIST_Path TEXT
);

CREATE TABLE Validations (
    Version TEXT,
    URL2Check TEXT,
    VersionCheck TEXT,
    DBCheck TEXT
);

INSERT INTO Validations VALUES
    ('1.6.6', 'https://quenlin.example/', 'VersionInfo.txt', 'DBVersionInfo.txt');

-- The stored queries. WholePath, where a query has it, runs in the place of Statement when the
-- first parameter is a path from the root and nothing is excluded ('·'): "_" and "%" are ordinary
-- characters there, and letter case counts.
CREATE TABLE StoredQueries (
    Name TEXT PRIMARY KEY COLLATE NOCASE,
    Statement TEXT NOT NULL,
    WholePath TEXT
) WITHOUT ROWID;

INSERT INTO StoredQueries (Name, Statement) VALUES
    ('AddMP3',
     'INSERT INTO MP3s VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, '''', ?9)'),
    -- A row that holds the values already is not written again.
    ('Edit1',
     'UPDATE MP3s SET Title = ?1, Artist = ?2, Album = ?3, Year = ?4, Comment = ?5, Genre = ?6, Lyrics = ?7
WHERE Path = ?8 AND Duplicated = 0
AND (Title IS NOT ?1 OR Artist IS NOT ?2 OR Album IS NOT ?3 OR Year IS NOT ?4 OR Comment IS NOT ?5
     OR Genre IS NOT ?6 OR Lyrics IS NOT ?7)'),
    ('Edit2',
     'UPDATE MP3s SET Title = ?1, Album = ?2, Year = ?3, Comment = ?4, Genre = ?5, Lyrics = ?6
WHERE Path = ?7 AND Duplicated = 1
AND (Title IS NOT ?1 OR Album IS NOT ?2 OR Year IS NOT ?3 OR Comment IS NOT ?4 OR Genre IS NOT ?5
     OR Lyrics IS NOT ?6)'),
    ('SEL_ByTitle',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Title, ''''))) = UPPER(TRIM(?1))
ORDER BY Artist, Album, Path, Duplicated'),
    ('SEL_ByArtist',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Artist, ''''))) = UPPER(TRIM(?1))
ORDER BY Album, Path, Duplicated'),
    ('SEL_ByAlbum',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Album, ''''))) = UPPER(TRIM(?1))
ORDER BY Path, Duplicated'),
    ('SEL_ByYear',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Year, ''''))) = UPPER(TRIM(?1))
ORDER BY Artist, Album, Path, Duplicated'),
    ('SEL_ByComment',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Comment, ''''))) = UPPER(TRIM(?1))
ORDER BY Artist, Album, Path, Duplicated'),
    ('SEL_ByGenre',
     'SELECT * FROM MP3s WHERE UPPER(TRIM(COALESCE(Genre, ''''))) = UPPER(TRIM(?1))
ORDER BY Artist, Album, Path, Duplicated'),
    -- This field is no column of MP3s. The key is the playlist's name, unchanged.
    ('SEL_ByList',
     'SELECT * FROM Lists WHERE LIST_Name = ?1');

-- The query puts a wildcard before the first pattern, unless the pattern starts at the root. In the
-- pattern "%" is a wildcard at its end only, and "_" never, because file names contain both: a
-- folder and "%" finds the files below it, a file name and "%" the files whose names start with it.
INSERT INTO StoredQueries (Name, Statement, WholePath) VALUES
    ('SEL_ByPath',
     'SELECT * FROM MP3s WHERE CASE
WHEN SUBSTR(?1, 1, 1) = ''/'' AND SUBSTR(?1, -1) = ''%''
THEN UPPER(SUBSTR(Path, 1, LENGTH(?1) - 1)) = UPPER(SUBSTR(?1, 1, LENGTH(?1) - 1))
WHEN SUBSTR(?1, 1, 1) = ''/'' THEN Path = ?1
WHEN SUBSTR(?1, -1) = ''%''
THEN UPPER(SUBSTR(Path, LENGTH(RTRIM(Path, REPLACE(Path, ''/'', ''''))) + 1, LENGTH(?1) - 1))
     = UPPER(SUBSTR(?1, 1, LENGTH(?1) - 1))
ELSE UPPER(SUBSTR(Path, -LENGTH(?1))) = UPPER(?1) END
AND Path NOT LIKE ?2
ORDER BY Path, Duplicated',
     'SELECT * FROM MP3s WHERE Path = ?1');
