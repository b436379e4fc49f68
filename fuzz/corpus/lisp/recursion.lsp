(defun f (x) (cons x (f (list x)))) (f `A`)
