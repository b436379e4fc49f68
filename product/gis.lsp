;; The commands of Norvane GIS.
;;
;; The module has one function, cf:gis_smart_prompting, whose first argument says what is to be done. Each
;; command below is a short way to one of its codes. Read them, change them, write your own: a routine of
;; yours that draws a point can call gis:prompt-entity as GIS-PROMPT does.
;;
;;   GIS-PROMPT      1  fills the sheet of an entity's feature and links the entity to the record
;;   GIS-SLOT     2, 3  shows or changes a remembered value
;;   GIS-LINKS       4  links blocks to records that exist
;;   GIS-BLOCKLINKS  5  settings of title block links
;;   GIS-TITLES      6  inserts or updates title blocks
;;   GIS-SETTINGS    7  the current template and output database
;;   GIS-AUDIT       8  finds and mends links that lead nowhere
;;   GIS-UNLINK         takes links off entities, with their records or without
;;   GIS-ERASE-NEW      erases records that were made new and that undo has left without a link
;;   GIS-REPORT         lists what is wrong between links and records
;;   GIS-EXPORT      9  linked entities with their records to a shape file
;;   GIS-EXPORTSET  10  the same for one kind of shape, without a dialog
;;   GIS-IMPORT     11  a shape file into the drawing and the database
;;   GIS-POINTS         lists, adds, corrects, deletes and draws points of a coordinate file
;;   GIS-AUTOMATION 12  calls a program by its automation interface
;;   GIS-POLYGON    13  finds the polygon round a point
;;   GIS-DATABASE   14  chooses or makes a database
;;   GIS-SERVER      2  an output database on a server
;;   GIS-EDITOR     15  defines the features of the template
;;   GIS-UTILITIES  16  imports and edits tables
;;   GIS-TABLE          shows a table of the output database and puts its values right
;;   GIS-RECORDS        the records of a table beside the drawing
;;   GIS-INDEX          gives tables an index of their keys
;;   GIS-BLOCKS     17  inserts blocks from records
;;   GIS-QUERY      18  shows the records of entities that are picked
;;   GIS-SELECT         selects entities by a condition on their records
;;   GIS-CONDITIONS     the same in a dialog, which keeps conditions in the drawing
;;   GIS-RECORD     19  adds a record to the output database
;;   GIS-POLYLINKS  20  links areas by the text inside
;;   GIS-AREACHECK      tells what is wrong with areas and the texts inside
;;   GIS-LABELS         shows values of the records at the entities of a feature
;;   GIS-COLOURS        colours the entities of a feature by a field of their records
;;   GIS-MAKETEXTS, GIS-UPDATETEXTS, GIS-LEGEND  make entities of what the two show
;;   GIS-REFRESH        reads the records behind labels and colours again
;;   GIS-FEATURE    21  says whether a feature is defined

;; --- Current databases -----------------------------------------------------------------------------------

;; The remembered value of a slot from 0 to 29; nil when it is empty. An empty slot leaves ret_string as it
;; was, so it is cleared first.
(defun gis:value (slot)
  (setq ret_string nil)
  (cf:gis_smart_prompting 3 slot)
  ret_string)

(defun gis:template () (gis:value 1))
(defun gis:output () (gis:value 2))

;; Whether both databases are chosen. Where one is not, the settings are shown once.
(defun gis:databases-chosen ()
  (if (not (and (gis:template) (gis:output)))
    (cf:gis_smart_prompting 7))
  (cond ((and (gis:template) (gis:output)))
        (t (prompt "\nNo databases are chosen: run GIS-SETTINGS.")
           nil)))

;; --- Entities --------------------------------------------------------------------------------------------

;; The value of a block reference's attribute; nil without such an attribute.
(defun gis:attribute (block tag / entity data value)
  (if (= (cdr (assoc 66 (entget block))) 1)
    (setq entity (entnext block)))
  (while entity
    (setq data (entget entity))
    (cond ((/= (cdr (assoc 0 data)) "ATTRIB") (setq entity nil))
          ((= (strcase (cdr (assoc 2 data))) tag)
           (setq value (cdr (assoc 1 data)) entity nil))
          (t (setq entity (entnext entity)))))
  value)

;; Survey points are blocks of this name; PT# is their number and DESC2 their description.
(defun gis:survey-point-p (entity / data)
  (setq data (entget entity))
  (and (= (cdr (assoc 0 data)) "INSERT")
       (= (strcase (cdr (assoc 2 data))) "SRVPNO1")))

;; Text that says nothing counts as none.
(defun gis:text-or-nil (text)
  (if (and text (/= (vl-string-trim " " text) "")) text))

;; The key of an entity's record: the point number, or the handle.
(defun gis:key (entity / number)
  (if (gis:survey-point-p entity)
    (setq number (gis:text-or-nil (gis:attribute entity "PT#"))))
  (cond (number)
        (t (cdr (assoc 5 (entget entity))))))

;; The description of a survey point, which names its feature; nil for others.
(defun gis:description (entity)
  (if (gis:survey-point-p entity)
    (gis:text-or-nil (gis:attribute entity "DESC2"))))

;; The first of some names that the template knows as a feature, with or without an S at its end; nil for none.
(defun gis:known-name (names / found name)
  (while (and names (not found))
    (setq name (strcase (car names)) names (cdr names))
    (if (/= name "")
      (setq found (cond ((gis:feature-p name) name)
                        ((gis:feature-p (strcat name "S")) (strcat name "S"))
                        ((and (wcmatch name "?*S") (gis:feature-p (substr name 1 (1- (strlen name)))))
                         (substr name 1 (1- (strlen name))))))))
  found)

;; The feature that an entity suggests: what a survey point is described as; for others that of the record which
;; they are linked to, or the feature that is called as the block or the layer is. nil for none: the sheet then offers
;; the one that was used last.
(defun gis:proposed-feature (entity / data link)
  (setq data (entget entity) link (gis:current-link entity))
  (if (gis:survey-point-p entity)
    (gis:description entity)
    (gis:known-name (append (if link (list (gis:trimmed (nth 2 link))))
                            (if (= (cdr (assoc 0 data)) "INSERT") (list (cdr (assoc 2 data))))
                            (list (cdr (assoc 8 data)))))))

;; The strings of an entity's link; nil when it has none.
(defun gis:link (entity / strings)
  (foreach group (cdr (cadr (assoc -3 (entget entity (list link-application$)))))
    (if (= (car group) 1000) (setq strings (append strings (list (cdr group))))))
  strings)

;; Northing, easting and elevation of an entity's first point. The vertices of light polylines have no
;; heights of their own.
(defun gis:coordinates (entity / data at)
  (setq data (entget entity)
        at (cdr (assoc 10 data)))
  (if at
    (mapcar 'float (list (cadr at) (car at)
                         (cond ((caddr at)) ((cdr (assoc 38 data))) (0.0))))
    (list 0.0 0.0 0.0)))

;; --- What the window shows of a link -----------------------------------------------------------------------

;; The window shows the strings of this application's data under these names, and lists the entities that have
;; it with the string called Feature.
(setq link-application$ "ZGEO_GIS_2000"
      link-strings$ '("Template" "Output" "Feature" "Key field" "Key"))

;; The list of entities shows survey points by these attributes.
(setq list-number-tags$ '("PT#")
      list-description-tags$ '("DESC2"))

;; The table that a template says a feature writes to; one of the feature's own name where it says nothing.
(defun gis:table (template feature / row)
  (setq row (db:record template "ZGEO_LINKS" (list (cons "GIS_NAME" feature))))
  (setq row (if (listp row) (cdr (assoc "TABLE_NAME" row))))
  (cond (row) (t feature)))

;; Where a file of a link is to be looked for: at its path, or beside the drawing where that does not exist, since
;; a job's folder may have been moved. Connect strings are no files.
(defun gis:place (path / name)
  (setq name (if (not (gis:server-p path)) (gis:name path)))
  (cond ((not name) path)
        ((findfile path) path)
        ((findfile (strcat (getvar "DWGPREFIX") name)))
        (t path)))

;; The place of the last separator of folders in a path; 0 when it has none.
(defun gis:last-separator (path / at)
  (setq at (strlen path))
  (while (and (> at 0) (not (member (substr path at 1) '("/" "\\"))))
    (setq at (1- at)))
  at)

;; The record that the strings of a link lead to, as pairs of field and value; nil when there is none. A string
;; says why it cannot be read. Records of old tables have no GIS_KEY. A first pair tells that the output was found
;; elsewhere.
(defun link-record (strings / feature output table key record)
  (if (>= (length strings) 5)
    (progn
      (setq feature (gis:trimmed (nth 2 strings))
            output (gis:place (nth 1 strings))
            table (gis:table (gis:place (nth 0 strings)) feature)
            key (cons (gis:trimmed (nth 3 strings)) (gis:trimmed (nth 4 strings)))
            record (db:record output table (list key (cons "GIS_KEY" feature))))
      (if (= (type record) 'STR)
        (setq record (db:record output table (list key))))
      (if (and (listp record) record (/= output (nth 1 strings)))
        (cons (cons "(read beside the drawing)" output) record)
        record))))

(defun gis:trimmed (text) (vl-string-trim " \t" text))

;; The files of the pictures that a record has, which the window shows small: at their place, or beside the output or
;; the drawing.
(defun link-pictures (strings record / output folder path files)
  (setq output (gis:place (nth 1 strings))
        folder (if (gis:server-p output) "" (substr output 1 (gis:last-separator output))))
  (foreach field record
    (setq path (cdr field))
    (if (and (wcmatch (strcase (car field)) "IMAGE_ZGEO/*") (/= path "")
             (setq path (cond ((findfile path))
                              ((findfile (strcat folder (gis:name path))))
                              ((findfile (gis:place path))))))
      (setq files (cons path files))))
  (reverse files))

;; --- What the window is told of the current databases -------------------------------------------------------

;; A part of a connect string, such as DSN; nil without it.
(defun gis:connect-part (connect name / from to)
  (if (setq from (vl-string-search (strcat ";" name "=") (strcase connect)))
    (progn
      (setq from (+ from 2 (strlen name)) to (vl-string-search ";" connect from))
      (substr connect (1+ from) (if to (- to from) (strlen connect))))))

;; A database as a pair of its name and where it is. Of a connect string only the source and the user are told.
(defun gis:database-text (path / place)
  (cond ((not path) (cons "none" "It is chosen with GIS, Settings."))
        ((gis:server-p path)
         (cons (cond ((gis:connect-part path "DSN")) ("server"))
               (strcat "Database on a server"
                       (if (gis:connect-part path "UID") (strcat ", as " (gis:connect-part path "UID")) ""))))
        ((findfile path) (cons (gis:name path) path))
        (t (cons (strcat (gis:name path) " (not there)") path))))

(defun gis:server-p (path) (wcmatch (strcase path) "ODBC;*"))
(defun gis:name (path) (substr path (1+ (gis:last-separator path))))

;; The fields at the lower edge of the window, after each command: labels and colours follow it, too. Reading a
;; remembered value sets ret_string, which is the user's.
(defun window-status (/ ret_string)
  (gis:refresh-annotation)
  (mapcar '(lambda (what path / text)
             (setq text (gis:database-text path))
             (cons (strcat what ": " (car text)) (cdr text)))
          '("Template" "Output")
          (list (gis:template) (gis:output))))

;; The databases of all links of the drawing, as a list of (count template output), each where it was or beside the
;; drawing.
(defun gis:linked-databases (/ set number link places known databases)
  (setq number 0
        set (ssget "_X" (list (list -3 (list link-application$)))))
  (repeat (if set (sslength set) 0)
    (setq link (gis:link (ssname set number)) number (1+ number))
    (if (>= (length link) 5)
      (progn
        (setq places (list (nth 0 link) (nth 1 link)) known (assoc places databases))
        (setq databases (if known
                          (subst (list places (1+ (cadr known))) known databases)
                          (cons (list places 1) databases))))))
  (mapcar '(lambda (item) (list (cadr item) (gis:place (caar item)) (gis:place (cadar item)))) databases))

;; Whether two paths are one; nil is no path.
(defun gis:same-path-p (one other) (and one other (= (strcase one) (strcase other))))

;; The window has opened a drawing. Where its links lead to other databases than the current ones, a line says so, and
;; where most of them do, they can be made current.
(defun drawing-opened (/ ret_string databases all others most told)
  (gis:refresh-annotation)
  (setq all 0 others 0 databases (gis:linked-databases))
  (foreach item databases
    (setq all (+ all (car item)))
    (if (or (not most) (> (car item) (car most))) (setq most item))
    (if (not (gis:current-p item)) (setq others (+ others (car item)))))
  (setq told (strcat "\n" (itoa others) " of " (itoa all) " links lead to other databases than the current ones"))
  (cond ((= others 0))
        ((gis:current-p most)
         (prompt (strcat told ".\n")))
        (t (prompt (strcat told ": " (gis:shown (cadr most)) " and " (gis:shown (caddr most)) ".\n"))
           (gis:offer-databases (cadr most) (caddr most)))))

(defun gis:current-p (item)
  (and (gis:same-path-p (cadr item) (gis:template)) (gis:same-path-p (caddr item) (gis:output))))

(defun gis:shown (path)
  (if (gis:server-p path) (car (gis:database-text path)) path))

;; Makes two databases the current ones when the user wants it.
(defun gis:offer-databases (template output)
  (if (and (findfile template) (or (gis:server-p output) (findfile output))
           (= (gis:ask "Databases of the drawing"
                (strcat "The links of this drawing lead to\n" (gis:shown template) "\n" (gis:shown output)
                        "\nwhich are not the current databases.\n\nMake them current?")
                "No")
              "Yes"))
    (progn
      (cf:gis_smart_prompting 2 1 template)
      (cf:gis_smart_prompting 2 2 output)
      (prompt "\nThey are the current databases now.\n"))))

;; --- Smart prompting -------------------------------------------------------------------------------------

;; Whether the template defines a feature of exactly this name.
(defun gis:feature-p (name)
  (= (cf:gis_smart_prompting 21 (gis:place (gis:template)) (strcase name)) 1))

;; The same, with or without the digits at the end of its name: TREE12 opens TREE.
(defun gis:feature-known-p (name)
  (or (gis:feature-p name)
      (gis:feature-p (vl-string-right-trim "0123456789" (strcase name)))))

;; Whether a record may be written, asked where the output of an entity's link is gone: it would be made anew, and
;; the records that were in it are not there.
(defun gis:output-there-p (entity / link path)
  (setq link (gis:link entity) path (gis:output))
  (cond ((not link) t)
        ((gis:server-p path) t)
        ((findfile (gis:place path)) t)
        ((/= (strcase (nth 1 link)) (strcase path)) t)
        (t (= (gis:ask "Output database is missing"
                (strcat "The entity is linked to a record of\n" path "\nwhich is not there.\n"
                        "Do you want to make it anew, without its records?")
                "Yes")
              "Yes"))))

;; The link of an entity to a record in the current output, where it was or beside the drawing; nil for any other.
(defun gis:current-link (entity / link)
  (setq link (gis:link entity))
  (if (and (>= (length link) 5)
           (= (strcase (gis:place (nth 1 link))) (strcase (gis:place (gis:output)))))
    link))

;; The first values of a record as text.
(defun gis:record-text (record / text count value)
  (setq text "" count 0)
  (foreach pair record
    (setq value (gis:as-text (cdr pair)))
    (if (and (< count 5) (/= value ""))
      (setq count (1+ count)
            text (strcat text "\n" (car pair) ": " value))))
  text)

(defun gis:as-text (value)
  (cond ((= (type value) 'STR) value)
        ((= (type value) 'INT) (itoa value))
        ((= (type value) 'REAL) (rtos value 2 3))
        ("")))

;; The key of an entity: of the record that it is linked to, else its own. One that is only a handle may have been
;; used by another drawing for another entity: where the output has a record under it, the user says whether it is
;; this entity's. A new record gets the handle and -2, -3 ... as its key.
(defun gis:record-key (entity feature / key table record number)
  (setq key (cond ((gis:current-link entity) (gis:trimmed (nth 4 (gis:current-link entity))))
                  (t (gis:key entity))))
  (if (and feature (not (gis:link entity)) (= key (cdr (assoc 5 (entget entity)))))
    (progn
      (setq table (gis:table (gis:template) (strcase feature))
            record (gis:record-under table key feature))
      (if (and record
               (= (gis:ask "A record is there"
                    (strcat "The output has a record under the handle " key ", and the entity is not linked to it:"
                            (gis:record-text record)
                            "\n\nIs it the record of this entity? No makes a new one.")
                    "Yes")
                  "No"))
        (progn
          (setq number 2)
          (while (gis:record-under table (strcat key "-" (itoa number)) feature)
            (setq number (1+ number)))
          (setq key (strcat key "-" (itoa number)))))))
  key)

;; The record of a key in the output; nil when there is none, or no table.
(defun gis:record-under (table key feature / record)
  (setq record (db:record (gis:output) table (list (cons "PT_ID" key) (cons "GIS_KEY" (strcase feature)))))
  (if (listp record) record))

;; Opens the sheet for an entity. The result is 1 when a record was saved, 0 otherwise. With a feature that
;; the template does not have, or none, the sheet opens all the same and lets the user choose.
(defun gis:prompt-entity (entity key feature / known)
  (setq known (and feature (gis:feature-known-p feature)))
  (if (and feature (not known))
    (prompt (strcat "\nThe feature " feature " is not defined; choose one in the sheet.")))
  (apply 'cf:gis_smart_prompting
    (append (list 1 exedir$ (gis:template) (gis:output) "PT_ID" key)
            (gis:coordinates entity)
            (list entity
                  (cond (feature) (""))
                  (if known 1 0)
                  0.0 0.0 0.0 0.0 0.0 0.0 ""))))

;; A new point where the user shows it; nil when nothing was drawn.
(defun gis:draw-point (/ at echo last)
  (if (setq at (getpoint "\nSpecify a point: "))
    (progn
      (setq echo (getvar "CMDECHO") last (entlast))
      (setvar "CMDECHO" 0)
      (command "_.POINT" at)
      (setvar "CMDECHO" echo)
      (if (not (eq last (entlast))) (entlast)))))

;; Selects an entity or draws a point. nil when the user presses Enter. Auto switches isAuto, generated keys, on
;; and off; a drawn point is in drawn.
(defun gis:pick-entity (question / picked entity)
  (while (not entity)
    (initget "Point Auto")
    (setq picked (entsel (strcat question " or [Point/Auto keys " (if isAuto "off" "on") "]: ")))
    (cond ((= picked "Auto") (setq isAuto (not isAuto)))
          ((= picked "Point") (setq entity (gis:draw-point) drawn entity))
          ((listp picked) (setq entity (car picked))))
    ;; Enter ends the command; a pick beside everything asks again.
    (if (and (not picked) (= (getvar "ERRNO") 52)) (setq entity 'NONE)))
  (if (/= entity 'NONE) entity))

;; Fills the sheet of one entity and says what came of it. T when a record was saved.
(defun gis:prompt-picked (entity / saved feature key)
  (if (gis:output-there-p entity)
    (progn
      (setq feature (cond (panel-feature) ((gis:proposed-feature entity)))
            key (if isAuto "#AUTO#" (gis:record-key entity feature))
            saved (gis:prompt-entity entity key feature))
      ;; A point that was drawn for a record goes with it.
      (if (and drawn (/= saved 1)) (entdel drawn))
      (prompt (cond ((/= saved 1) "\nNothing was saved.")
                    ((gis:link entity) "\nThe record is saved and linked.")
                    (t "\nThe record is saved, but the entity could not be linked to it.")))
      (= saved 1))))

;; What is changed from here on is taken back by an undo of its own.
(defun gis:begin-undo-step (/ echo)
  (setq echo (getvar "CMDECHO"))
  (setvar "CMDECHO" 0)
  (command "_.UNDO" "_BE")
  (command "_.UNDO" "_E")
  (setvar "CMDECHO" echo))

;; Whether the next prompt is answered by a script, which knows how many answers it has.
(defun gis:script-answers-p () (>= (getvar "CMDACTIVE") 4))

;; Smart prompting for one entity after the other, until Enter or Escape or a sheet that is left without saving. A
;; script gets one sheet a call. With Auto keys the record gets the next free number in place of the point number
;; or handle.
(defun c:gis-prompt (/ entity drawn isAuto)
  (if (gis:databases-chosen)
    (progn
      (setq entity (gis:pick-entity "\nSelect object"))
      (while entity
        (setq entity (if (and (gis:prompt-picked entity) (not (gis:script-answers-p)))
                       (progn
                         (gis:begin-undo-step)
                         (setq drawn nil)
                         (gis:pick-entity "\nSelect next object, Enter to end,")))))))
  (princ))

;; Shows a remembered value and takes a new one.
(defun c:gis-slot (/ slot old new)
  (initget 5)
  (setq slot (getint "\nNumber of the value (0 to 29): "))
  (setq old (gis:value slot)
        new (getstring t (strcat "\nNew value <" (cond (old) ("empty")) ">: ")))
  (if (/= new "")
    (cf:gis_smart_prompting 2 slot new))
  (princ))

;; Says whether the template defines a feature.
(defun c:gis-feature (/ name answer)
  (if (gis:databases-chosen)
    (progn
      (setq name (strcase (getstring t "\nFeature: "))
            answer (cf:gis_smart_prompting 21 (gis:template) name))
      (prompt (strcat "\n" name
                      (cond ((= answer 1) " is defined.")
                            ((= answer 0) " is not defined.")
                            ((= answer -1) ": there is no template file.")
                            (t ": the template file is no template."))))))
  (princ))

;; --- Links -----------------------------------------------------------------------------------------------

(defun c:gis-links () (cf:gis_smart_prompting 4) (princ))
(defun c:gis-blocklinks () (cf:gis_smart_prompting 5) (princ))
(defun c:gis-titles () (cf:gis_smart_prompting 6) (princ))
(defun c:gis-audit () (cf:gis_smart_prompting 8) (princ))

;; Tells what is wrong between links and records, and saves it; values that the drawing has otherwise may go into the
;; records.
(defun c:gis-report (/ distance path rows)
  (setq distance (getdist "\nValues differ by more than <0.01>: ")
        distance (cond (distance) (0.01))
        path (getfiled "Report of links" (strcat (getvar "DWGPREFIX") "links.csv") "csv" 1)
        rows (apply 'gis:link-report (if path (list distance path) (list distance))))
  (foreach row rows
    (prompt (strcat "\n" (nth 0 row) ": " (nth 1 row) " " (nth 2 row) " " (nth 3 row) " " (nth 4 row) " " (nth 5 row))))
  (if (assoc "values differ" rows) (gis:update-records distance))
  (princ))

;; Shows the records of entities that are picked. A pick beside everything asks again; Enter and Escape end it. Set
;; gis:query-goes-on$ to nil, and such a pick ends it too, as it does in scripts.
(setq gis:query-goes-on$ t)
(defun c:gis-query ()
  (setq query-goes-on$ (if (and gis:query-goes-on$ (not (gis:script-answers-p))) "1" ""))
  (cf:gis_smart_prompting 18)
  (setq query-goes-on$ nil)
  (princ))

;; Selects the entities whose records fulfil a condition; the next command takes them. A routine that wants them as a
;; set calls (gis:select TABLE CONDITION).
(defun c:gis-select () (gis:select-by-condition) (princ))

;; The same in a dialog, which also keeps conditions in the drawing under names.
(defun c:gis-conditions () (gis:choose-condition) (princ))

;; Circles round the places of faults, on a layer of their own.
(defun gis:mark-faults (faults / size)
  (setq size (/ (getvar "VIEWSIZE") 50.0))
  (foreach fault faults
    (entmake (list '(0 . "CIRCLE") '(8 . "GIS-AREACHECK") (cons 10 (car fault)) (cons 40 size)))))

;; How far gaps and ends that stick out reach which are told, here and before areas are linked, in drawing units. Set
;; it to 0, and areas are linked without being looked through before.
(setq area-check-distance$ 0.1)

;; Looks for areas without a label, labels in no area or in several, gaps and ends that stick out.
(defun c:gis-areacheck (/ set standard distance faults)
  (prompt "\nSelect lines, polylines and text.")
  (if (setq set (ssget))
    (progn
      (initget 6)
      (setq standard (if (> area-check-distance$ 0) area-check-distance$ 0.1)
            distance (cond ((getreal (strcat "\nGaps and ends up to <" (rtos standard 2 2) ">: "))) (standard))
            faults (gis:area-faults set distance))
      (cond ((= faults "cancelled") (prompt "\nCancelled."))
            ((not faults) (prompt "\nNothing is wrong with these areas."))
            (t (foreach fault faults (prompt (strcat "\n" (cadr fault) ".")))
               (prompt (strcat "\nFaults: " (itoa (length faults)) "."))
               (if (= (gis:ask "Mark the places"
                        (strcat "Do you want circles round these " (itoa (length faults))
                                " places, on the layer GIS-AREACHECK?")
                        "No")
                      "Yes")
                 (gis:mark-faults faults))))))
  (princ))

;; Links off what is selected; whether the records go too is asked.
(defun c:gis-unlink (/ set)
  (if (setq set (ssget)) (gis:unlink set))
  (princ))

(defun c:gis-erase-new () (gis:erase-new-records) (princ))

(defun c:gis-polylinks ()
  (if (gis:databases-chosen)
    (cf:gis_smart_prompting 20 lspdir$ (gis:template) (gis:output)))
  (princ))

(defun c:gis-polygon (/ point found data)
  (if (setq point (getpoint "\nPick a point inside polygon: "))
    (if (setq found (cf:gis_smart_prompting 13 point))
      (progn
        (setq data (entget found))
        (prompt (strcat "\n" (cdr (assoc 0 data)) " " (cdr (assoc 5 data)) " on layer " (cdr (assoc 8 data)) ".")))
      (prompt "\nUsing this point cannot find any polygon!")))
  (princ))

;; --- Databases -------------------------------------------------------------------------------------------

(defun c:gis-settings () (cf:gis_smart_prompting 7) (princ))
(defun c:gis-editor () (cf:gis_smart_prompting 15) (princ))
(defun c:gis-blocks () (cf:gis_smart_prompting 17) (princ))
(defun c:gis-table () (gis:edit-table) (princ))

;; The panel of records; in a script it is a dialog (1801).
(defun c:gis-records ()
  (if (gis:databases-chosen) (gis:records-panel))
  (princ))

;; Fills the sheet of an entity that has been selected in the panel. One without a record gets the feature of the table
;; that is shown there, where the template has it.
(defun gis:new-record (entity table / drawn isAuto panel-feature)
  (if (gis:databases-chosen)
    (progn
      (if (and (not (gis:link entity)) (gis:feature-known-p table))
        (setq panel-feature table))
      (gis:prompt-picked entity))))

;; Gives a table, or all of the output, an index by which records are found by their keys.
(defun c:gis-index ()
  (if (gis:databases-chosen) (gis:index (getstring T "\nTable <all>: ")))
  (princ))

;; The workbench on the output database; points that its imports are to draw are drawn when it is left.
(defun c:gis-utilities ()
  (setq imported-points$ nil)
  (cf:gis_smart_prompting 16)
  (foreach file imported-points$
    (gis:tell-drawn (gis:draw-points (gis:points (car file) (cdr file)))))
  (princ))

(defun c:gis-database (/ path)
  (if (setq path (cf:gis_smart_prompting 14))
    (prompt (strcat "\n" path)))
  (princ))

;; Puts the output database on a server: a data source of this machine, and the user there. The password is asked
;; for when it is first needed.
(defun c:gis-server (/ source user)
  (setq source (getstring t "\nData source, or Enter to leave the output database as it is: "))
  (if (/= source "")
    (progn
      (setq user (getstring t "\nUser, or Enter for the one of the data source: "))
      (cf:gis_smart_prompting 2 2
        (strcat "ODBC;DSN=" source (if (= user "") "" (strcat ";UID=" user))))
      (prompt (strcat "\nOutput database: " (gis:output)))))
  (princ))

;; Adds one record to a table of the output database: its fields and values are asked for until Enter.
(defun c:gis-record (/ table field pairs result)
  (if (gis:databases-chosen)
    (progn
      (setq table (getstring t "\nTable: "))
      (while (/= (setq field (getstring t "\nField (Enter when done): ")) "")
        (setq pairs (append pairs (list field (getstring t (strcat "\n" field ": "))))))
      (setq result (apply 'cf:gis_smart_prompting (append (list 19 (gis:output) 0 table) pairs)))
      (prompt (if (= result 1.0) "\nThe record is added." "\nThe record could not be added."))))
  (princ))

;; --- Exchange --------------------------------------------------------------------------------------------

;; The set that an export goes to: asked for in the folder of the last one, or of the drawing. nil when none is named.
(defun gis:ask-export-path (/ folder)
  (setq folder (gis:export-folder))
  (getfiled "Export to SHP" (if (= folder "") (getvar "DWGPREFIX") folder) "shp" 1))

(defun c:gis-export (/ path)
  (if (setq path (gis:ask-export-path))
    (cf:gis_smart_prompting 9 path))
  (princ))

;; The types of shapes, without and with heights.
(setq gis:shape-types$ '(("Points" 1 11) ("Lines" 3 13) ("Areas" 5 15)))

(defun c:gis-exportset (/ set kind heights path)
  (if (setq set (ssget))
    (progn
      (initget "Points Lines Areas")
      (setq kind (getkword "\nShapes [Points/Lines/Areas] <Points>: "))
      (initget "Yes No")
      (setq heights (getkword "\nWith heights? [Yes/No] <No>: "))
      (if (setq path (gis:ask-export-path))
        (cf:gis_smart_prompting 10 path set
          (nth (if (= heights "Yes") 2 1) (assoc (cond (kind) ("Points")) gis:shape-types$))))))
  (princ))

;; GIS-IMPORT and GIS-POINTS stand with the points of coordinate files.
(load "gis-points.lsp")
;; GIS-LABELS, GIS-COLOURS and what goes with them.
(load "gis-annotation.lsp")

;; --- Other programs --------------------------------------------------------------------------------------

;; Calls a method of a class in a library that is driven by automation, with one text.
(defun c:gis-automation (/ library program class method text)
  (setq library (getstring t "\nLibrary: ")
        program (getstring t "\nProgram id: ")
        class (getstring t "\nClass: ")
        method (getstring t "\nMethod: ")
        text (getstring t "\nArgument: "))
  (prompt (strcat "\n" (cf:gis_smart_prompting 12 library program class method text)))
  (princ))

(princ)
